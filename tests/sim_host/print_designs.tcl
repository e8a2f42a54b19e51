# What the stand-in host reads in schematics, for schematics.py: print_designs.tcl FILE...
#
# One line an item, its fields parted by tabs: design FILE | note SENTENCE | page NAME |
# part REFERENCE UNIT IN-BOM FITTED | field REFERENCE NAME VALUE | pin REFERENCE NUMBER NET NAME. Symbols that only
# name nets are left out.
source -encoding utf-8 [file join [file dirname [file normalize [info script]]] .. .. sim host kicad.tcl]
fconfigure stdout -encoding utf-8 -translation lf

proc line {args} {
    puts [join [lmap field $args {string map {\t " " \n " "} $field}] \t]
}

foreach file $argv {
    line design $file
    set design [kicad::load $file]
    foreach note [dict get $design notes] {
        line note $note
    }
    foreach page [dict keys [dict get $design pages]] {
        line page $page
    }
    foreach part [dict values [dict get $design parts]] {
        dict with part {
            if {$power} continue
            line part $reference $unit $inBom $fitted
            dict for {name text} $properties {
                line field $reference $name $text
            }
            foreach pin $pins {
                line pin $reference [dict get $pin number] [dict get $pin net] [dict get $pin name]
            }
        }
    }
}
