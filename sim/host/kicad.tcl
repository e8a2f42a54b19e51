# Reads a KiCad schematic (KiCad 6 to 9) with all its sheets into a plain in-memory design.
#
#   kicad::load PATH.kicad_sch  ->  design (a dict); an unreadable file is a Tcl error
#
# Units and axes: every coordinate is a whole number of mils (1/1000 inch) with y pointing down,
# on pages and inside library symbols alike. Angles are degrees counter-clockwise as seen.
# Texts are Tcl strings; the files are UTF-8.
#
# design   file      the root schematic, normalised
#          title     dict: title date rev company comments
#          pages     dict: page name -> page; the root page first, then in page-number order
#          parts     dict: part id -> part; one entry for each placed unit on each page; the id is
#                    the sheets' and the symbol's UUIDs, so it is the same at the next load
#          symbols   dict: symbol name -> symbol
#          nets      dict: net name -> list of {partId pinNumber}
#          aliases   dict: name of a group of bus members -> the members
#          notes     what the files hold that is not here, each a sentence for the log
#
# page     name       the sheet's own name, prefixed with its parents' below the second level
#          schematic  base name of the file that the page shows; two pages may share it
#          path       identifiers of the sheets on the way: / for the root, else /UUID/UUID...
#          inBom fitted onBoard simulated  0 when the sheet takes all its parts out
#          paper width height title
#          wires, buses      list of {x1 y1 x2 y2}
#          entries           list of {x y dx dy}
#          junctions, noConnects  list of {x y}
#          wireNets  the net name of each wire, in the order of wires
#          labels    list of dicts: kind (label, global, hierarchical) text x y rotation shape size
#          texts     list of dicts: text x y rotation size justify
#          lines     list of point lists {x1 y1 x2 y2 ...}: all that is drawn beside wires and symbols
#          sheets    list of dicts: name file page x y width height pins (name type x y rotation)
#          parts     ids of the parts on the page
#
# part     id page reference value footprint symbol unit style x y rotation mirror ("", x or y)
#          properties  dict: name -> value, Reference and Value included
#          texts       dict: property name -> {x y rotation size hidden justify}; justify is
#                      {left, center or right} {top, center or bottom}
#          power       1 for a symbol that only names a net (supply, ground, flag)
#          inBom fitted onBoard simulated
#          steps       {x y} in KiCad's own steps, which no rounding has moved
#          pins        list of dicts: number name type shape hidden x y (connection point)
#                      bodyX bodyY (where the pin meets the body) noConnect net
#
# symbol   name extends power pinNamesHidden pinNumbersHidden
#          local       1 for a supply that is one only on its page
#          properties  dict: name -> value
#          graphics    dict: {unit style} -> list of shapes; unit 0 and style 0 mean every one
#          pins        dict: {unit style} -> list of pins in symbol coordinates, as those of parts; also
#                      steps, and alternates: name -> what a part may choose instead (name type shape)
# shape    rectangle {x1 y1 x2 y2 fill} | circle {x y r fill} | polyline {points fill}
#          arc {x1 y1 xMiddle yMiddle x2 y2 fill} | bezier {points fill}
#          text {text x y rotation size}

namespace eval ::kicad {
    variable folder [file normalize [file join [file dirname [info script]] kicad]]
}
foreach topic {sexpr symbols parts instances notes drawings variables sheets buses connectivity} {
    source -encoding utf-8 [file join $::kicad::folder $topic.tcl]
}
unset topic

proc ::kicad::load {path} {
    set path [file normalize $path]
    if {[catch {connect [readSheets $path]} design]} {
        error [expr {[string match "* cannot be read: *" $design] ? $design : [unreadable $path $design]}]
    }
    return $design
}
