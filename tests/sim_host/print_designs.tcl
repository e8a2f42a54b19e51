# What the stand-in host reads in schematics, for other programs: print_designs.tcl FILE...
#
# One line an item, its fields parted by tabs: design FILE | page NAME | note TEXT |
# part REFERENCE UNIT VALUE FOOTPRINT IN-BOM FITTED PAGE | pin REFERENCE NUMBER NAME NET.
# Symbols that only name nets are left out.
source -encoding utf-8 [file join [file dirname [file normalize [info script]]] .. .. sim host kicad.tcl]
fconfigure stdout -encoding utf-8 -translation lf

proc line {args} {
    puts [join [lmap field $args {string map {\\ \\\\ \t \\t \n \\n} $field}] \t]
}

foreach file $argv {
    line design $file
    set design [kicad::load $file]
    foreach page [dict keys [dict get $design pages]] {
        line page $page
    }
    foreach note [dict get $design notes] {
        line note $note
    }
    foreach part [dict values [dict get $design parts]] {
        dict with part {
            if {$power} continue
            line part $reference $unit $value $footprint $inBom $fitted $page
            foreach pin $pins {
                line pin $reference [dict get $pin number] [dict get $pin name] [dict get $pin net]
            }
        }
    }
}
