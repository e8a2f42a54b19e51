# Text variables: ${NAME} stands for a field of the part, for something of the page, or for a text that
# the project gives. What nobody knows stays as it is written.

# `variables`: upper-case name -> text. Texts may name further variables, but not for ever, and no text grows
# for ever: one that would stays as it is written, too.
proc ::kicad::resolved {text variables} {
    set written $text
    for {set round 0} {$round < 5 && [string first "\$\{" $text] >= 0} {incr round} {
        set known {}
        set length [string length $text]
        foreach {named name} [regexp -all -inline {\$\{([^{}]*)\}} $text] {
            if {[dict exists $variables [string toupper $name]]} {
                lappend known $named [dict get $variables [string toupper $name]]
                incr length [string length [lindex $known end]]
            } else {
                unread $named
            }
        }
        if {$length > 100000} {
            unread "text of [string range $written 0 39]..., which grows without end"
            return $written
        }
        if {$known eq ""} {
            break
        }
        set text [string map $known $text]
    }
    return $text
}

# Those of a project, from the file beside its root sheet.
proc ::kicad::projectVariables {root} {
    set variables {}
    set file [file rootname $root].kicad_pro
    if {![catch {readFile $file} text]
            && [regexp {"text_variables"\s*:\s*\{((?:[^{}"]|"(?:[^"\\]|\\.)*")*)\}} $text -> list]} {
        foreach {- name value} [regexp -all -inline {"((?:[^"\\]|\\.)*)"\s*:\s*"((?:[^"\\]|\\.)*)"} $list] {
            dict set variables [string toupper $name] [subst -nocommands -novariables $value]
        }
    }
    return $variables
}

# Those of a page, and of its sheet and project. `numbers`: sheet path -> page number.
proc ::kicad::pageVariables {page variables numbers} {
    set path [dict get $page path]
    if {[dict exists $numbers $path] && [dict get $numbers $path] ne ""} {
        dict set variables # [dict get $numbers $path]
    }
    set title [dict get $page title]
    foreach {name key} {TITLE title ISSUE_DATE date REVISION rev COMPANY company} {
        dict set variables $name [dict get $title $key]
    }
    set number 0
    foreach comment [dict get $title comments] {
        dict set variables COMMENT[incr number] $comment
    }
    dict set variables SHEETPATH [expr {$path eq "/" ? "/" : "/[dict get $page name]/"}]
    dict set variables FILENAME [dict get $page schematic].kicad_sch
    return $variables
}

# A page with its texts as they are read.
proc ::kicad::resolvedPage {page variables} {
    dict for {key text} [dict get $page title] {
        dict set page title $key [resolved $text $variables]
    }
    foreach list {texts labels} {
        dict set page $list [lmap item [dict get $page $list] {
            dict replace $item text [resolved [dict get $item text] $variables]
        }]
    }
    return $page
}

# A part's properties as they are read.
proc ::kicad::resolvedProperties {properties variables} {
    if {[lsearch -glob [dict values $properties] "*\$\{*"] < 0} {
        return $properties
    }
    set own {}
    dict for {name value} $properties {
        dict set own [string toupper $name] $value
    }
    return [dict map {name value} $properties {resolved $value [dict merge $variables $own]}]
}
