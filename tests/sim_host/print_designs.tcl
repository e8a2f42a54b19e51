# What the stand-in host reads in schematics, for schematics.py: print_designs.tcl FILE...
#
# One line an item, its fields parted by tabs: design FILE | page NAME | part REFERENCE UNIT IN-BOM FITTED |
# pin REFERENCE NUMBER NET. Symbols that only name nets are left out.
source -encoding utf-8 [file join [file dirname [file normalize [info script]]] .. .. sim host kicad.tcl]
fconfigure stdout -encoding utf-8 -translation lf

proc line {args} {
    puts [join $args \t]
}

foreach file $argv {
    line design $file
    set design [kicad::load $file]
    foreach page [dict keys [dict get $design pages]] {
        line page $page
    }
    foreach part [dict values [dict get $design parts]] {
        dict with part {
            if {$power} continue
            line part $reference $unit $inBom $fitted
            foreach pin $pins {
                line pin $reference [dict get $pin number] [dict get $pin net]
            }
        }
    }
}
