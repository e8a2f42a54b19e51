# Sheets: each file is read once, and each place where it is used becomes a page.

namespace eval ::kicad {
    # Sheet widths and heights in millimetres, landscape (ISO 216 and ANSI/ASME Y14.1).
    variable paperSizes {
        A5 {210 148} A4 {297 210} A3 {420 297} A2 {594 420} A1 {841 594} A0 {1189 841}
        A {279.4 215.9} B {431.8 279.4} C {558.8 431.8} D {863.6 558.8} E {1117.6 863.6}
        USLetter {279.4 215.9} USLegal {355.6 215.9} USLedger {431.8 279.4}
    }
    # Up to this version of the format a supply symbol joins the net that its pin is named after.
    variable powerByValue 20230221
    # The format of KiCad 9, the last one that is read whole.
    variable lastVersion 20250114
    # Sheets that use each other twice make more pages than anybody can look at.
    variable mostPages 1000
    # Sheets within sheets; Tcl cannot go much deeper.
    variable mostLevels 200
}

# Reading goes along a context: what the root says for all pages, and `files` and `symbols`, those read so
# far.
proc ::kicad::readSheets {path} {
    variable unread {}
    set design [dict create file $path title {} pages {} parts {} symbols {} nets {} aliases {} notes {}]
    set context [dict create files {} symbols {} numbers {}]
    readSheetFile design context $path
    set root [dict get $context files $path root]
    dict set design title [titleOf $root]
    set uuid [value $root uuid]
    dict set context rootPath [expr {$uuid eq "" ? "" : "/$uuid"}]
    dict set context project [file rootname [fileName $path]]
    dict set context folder [file dirname $path]
    dict set context variables [projectVariables $path]
    dict set context overrides [rootOverrides $root]
    dict set context numbers [rootPageNumbers $root]
    addPage design context $path [dict create name [dict get $context project] path / above {} \
        fields {SHEETNAME ""} inBom 1 fitted 1 onBoard 1 simulated 1]
    dict set design pages [inPageOrder [dict get $design pages] [dict get $context numbers]]
    dict set design notes [lsort -unique [concat [dict get $design notes] [unreadNotes]]]
    return $design
}

# Reads a file unless it was read, and notes in the design what is left out.
proc ::kicad::readSheetFile {designName contextName path} {
    upvar 1 $designName design $contextName context
    if {![dict exists $context files $path] && [catch {takeSheetFile design context $path} problem]} {
        error [unreadable $path $problem]
    }
}

proc ::kicad::unreadable {path problem} {
    return "$path cannot be read: [lindex [split $problem \n] 0]"
}

proc ::kicad::takeSheetFile {designName contextName path} {
    upvar 1 $designName design $contextName context
    variable lastVersion
    variable reading [fileName $path]
    set root [parse [readFile $path]]
    if {[kind $root] ne "kicad_sch"} {
        error "it is not a schematic of KiCad 6 or later"
    }
    set version [value $root version 0]
    if {$version > $lastVersion} {
        dict lappend design notes "a KiCad later than 9 wrote this: what is new in it may be missing"
    }
    set drawings [dict merge [drawingsOf $root] [paperOf $root] \
        [dict create title [titleOf $root] schematic [file rootname [fileName $path]]]]
    dict set design aliases [dict merge [dict get $design aliases] [dict get $drawings aliases]]
    dict unset drawings aliases
    set nodes [children [child $root lib_symbols] symbol]
    countAllUnread $root [lmap node $nodes {
        if {[dict exists $context symbols $node]} continue
        set node
    }]
    set symbols {}
    dict update context symbols read {
        set found [symbolsOf read $nodes]
    }
    dict for {library symbol} $found {
        if {[dict get $symbol extends] ne ""} {
            dict lappend design notes \
                "[fileName $path] has no symbol [dict get $symbol extends], which $library extends"
        }
        dict set symbols $library [keepSymbol design $symbol [dict get $drawings schematic]]
    }
    dict set context files $path [dict create root $root drawings $drawings symbols $symbols \
        version $version]
}

# Files carry their own copies of the symbols; copies that differ get the schematic's name added.
proc ::kicad::keepSymbol {designName symbol schematic} {
    upvar 1 $designName design
    set own [dict get $symbol name]
    set name $own
    for {set copy 1} {[dict exists $design symbols $name]
            && [dict get $design symbols $name] ne [dict replace $symbol name $name]} {incr copy} {
        set name $own@$schematic[expr {$copy == 1 ? "" : "-$copy"}]
    }
    dict set design symbols $name [dict replace $symbol name $name]
    return $name
}

proc ::kicad::inPageOrder {pages numbers} {
    set keyed {}
    dict for {name page} $pages {
        set path [dict get $page path]
        set number [expr {[dict exists $numbers $path] ? [dict get $numbers $path] : "~"}]
        lappend keyed [list [expr {$path eq "/" ? "" : $number}] $name]
    }
    set ordered {}
    foreach item [lsort -dictionary -index 0 $keyed] {
        set name [lindex $item 1]
        dict set ordered $name [dict get $pages $name]
    }
    return $ordered
}

proc ::kicad::titleOf {root} {
    set block [child $root title_block]
    set comments {}
    foreach comment [children $block comment] {
        lappend comments [lindex $comment 2]
    }
    return [dict create title [value $block title] date [value $block date] \
        rev [value $block rev] company [value $block company] comments $comments]
}

proc ::kicad::paperOf {root} {
    variable paperSizes
    lassign [child $root paper] - name first second
    if {$name eq "User" && $second ne ""} {
        lassign [list $first $second] width height
    } elseif {[dict exists $paperSizes $name]} {
        lassign [dict get $paperSizes $name] width height
        if {$first eq "portrait"} {
            lassign [list $height $width] width height
        }
    } else {
        lassign [dict get $paperSizes A4] width height
        if {$name ne ""} {
            unread "paper $name"
        }
    }
    return [dict create paper $name width [mils $width] height [mils $height]]
}

# Adds the page that shows `file`, then the pages below it. `place` says where in the design it is: name
# and path of the page, what holds for all its parts, `fields` of its sheet, and `above`, the files on the
# way down: a sheet that contains itself is left out.
proc ::kicad::addPage {designName contextName file place} {
    upvar 1 $designName design $contextName context
    variable mostPages
    variable mostLevels
    variable reading [fileName $file]
    set above [concat [dict get $place above] [list $file]]
    set page [dict merge [dict get $context files $file drawings] [dict remove $place above fields] \
        [dict create sheets {}]]
    set name [dict get $page name]
    set variables [pageVariables $page [dict merge [dict get $context variables] [dict get $place fields]] \
        [dict get $context numbers]]
    set page [resolvedPage $page $variables]
    dict set page parts [addParts design $page $context $file $variables]
    dict set design pages $name $page

    set path [string trimright [dict get $place path] /]
    set sheets {}
    foreach node [children [dict get $context files $file root] sheet] {
        set reading [fileName $file]
        if {[catch {sheetOf $node $variables} sheet]} {
            dict lappend design notes "a sheet of [fileName $file] is left out: $sheet"
            continue
        }
        set below [fileBelow $file [dict get $sheet file] [dict get $context folder]]
        dict set sheet page ""
        if {$below in $above} {
            set problem "it is on itself"
        } elseif {![file isfile $below]} {
            set problem "there is no \"[dict get $sheet file]\""
        } elseif {[llength $above] >= $mostLevels} {
            set problem "there are $mostLevels levels above it already"
        } elseif {[dict size [dict get $design pages]] >= $mostPages} {
            set problem "there are $mostPages pages already"
        } elseif {![catch {readSheetFile design context $below} problem]} {
            set problem ""
        }
        if {$problem ne ""} {
            dict lappend design notes "sheet [dict get $sheet name] of [fileName $file] is left out: $problem"
        } else {
            dict set sheet page [freeName [dict get $design pages] $name [dict get $place path] [dict get $sheet name]]
            dict set context numbers $path/[dict get $sheet uuid] [pageNumberFor $node $path $context]
            addPage design context $below [dict merge [placeBelow $place $node] [dict create \
                name [dict get $sheet page] path $path/[dict get $sheet uuid] above $above \
                fields [dict replace [sheetFields $node] SHEETNAME [dict get $sheet name]]]]
        }
        lappend sheets $sheet
    }
    dict set design pages $name sheets $sheets
}

# The file of a sheet, as it is named by the file that shows it in a project that lies in `folder`.
proc ::kicad::fileBelow {file name folder} {
    set name [string map [list \\ / "\$\{KIPRJMOD\}" $folder] $name]
    # What begins with "~" is no home.
    return [file normalize [file join [file dirname $file] [regsub {^~} $name ./~]]]
}

# Tcl gives a name that begins with "~" as ./~
proc ::kicad::fileName {path} {
    return [string range $path [string last / $path]+1 end]
}

# What holds for all parts below a sheet.
proc ::kicad::placeBelow {place node} {
    foreach {key word no} {inBom in_bom no onBoard on_board no fitted dnp yes simulated exclude_from_sim yes} {
        if {[value $node $word] eq $no} {
            dict set place $key 0
        }
    }
    return $place
}

proc ::kicad::freeName {pages parent parentPath name} {
    set full [expr {$parentPath eq "/" ? $name : "$parent/$name"}]
    set free $full
    for {set copy 2} {[dict exists $pages $free]} {incr copy} {
        set free "$full ($copy)"
    }
    return $free
}

# What texts on its page, and its pins, may name: upper-case name -> text.
proc ::kicad::sheetFields {node} {
    set fields {}
    foreach property [children $node property] {
        dict set fields [string toupper [lindex $property 1]] [lindex $property 2]
    }
    return $fields
}

# `variables` are those of the page that shows it.
proc ::kicad::sheetOf {node variables} {
    lassign [point [child $node at]] x y
    lassign [point [child $node size]] width height
    set pins {}
    set own [dict merge $variables [sheetFields $node]]
    foreach pin [children $node pin] {
        set at [child $pin at]
        lassign [point $at] pinX pinY
        lappend pins [dict create name [resolved [plainText [lindex $pin 1]] $own] type [lindex $pin 2] \
            x $pinX y $pinY rotation [quarters $at]]
    }
    # KiCad 6 named these two in its user's language, but always wrote them first.
    set properties [children $node property]
    lassign [list [lindex $properties 0 2] [lindex $properties 1 2]] name file
    foreach property $properties {
        switch -exact -- [lindex $property 1] {
            Sheetname {set name [lindex $property 2]}
            Sheetfile {set file [lindex $property 2]}
        }
    }
    set name [resolved [plainText $name] $variables]
    if {$name eq ""} {
        set name [file rootname [fileName $file]]
    }
    return [dict create name $name file $file \
        uuid [value $node uuid] x $x y $y width $width height $height pins $pins]
}

# Adds the page's parts to the design and gives their ids.
proc ::kicad::addParts {designName page context file variables} {
    upvar 1 $designName design
    variable powerByValue
    set path [string trimright [dict get $page path] /]
    set known [dict get $context files $file symbols]
    set ids {}
    foreach node [children [dict get $context files $file root] symbol] {
        set library [value $node lib_name [value $node lib_id]]
        if {![dict exists $known $library]} {
            dict lappend design notes "[fileName $file] has no symbol $library"
            dict set known $library [keepSymbol design [unknownSymbol $library] [dict get $page schematic]]
        }
        set symbol [dict get $design symbols [dict get $known $library]]
        set overrides [overridesFor $node $path $context]
        if {[dict get $symbol power] && [dict get $context files $file version] < $powerByValue} {
            dict set overrides value [hiddenPinName $symbol]
        }
        set id $path/[value $node uuid]
        for {set copy 2} {[dict exists $design parts $id]} {incr copy} {
            set id "$path/[value $node uuid] ($copy)"
        }
        if {[catch {partFrom $node $id $page $symbol $overrides $variables} part]} {
            set name [expr {[dict exists $overrides reference] ? [dict get $overrides reference] : $id}]
            dict lappend design notes "part $name of [fileName $file] is left out: $part"
            continue
        }
        dict set design parts $id $part
        lappend ids $id
    }
    return $ids
}

# The name of the one pin of a supply symbol, if it is hidden.
proc ::kicad::hiddenPinName {symbol} {
    set pins [concat {*}[dict values [dict get $symbol pins]]]
    return [expr {[llength $pins] == 1 && [dict get [lindex $pins 0] hidden] ? [dict get [lindex $pins 0] name] : ""}]
}
