# Drawings: every page of a design, told to the plug-in record by record.

namespace eval ::drawing {}
foreach topic {measures symbols frames pages} {
    source -encoding utf-8 [file join $::host::folder drawing $topic.tcl]
}
unset topic

# The library symbols that a page uses, each once, as lists of records.
proc ::drawing::symbolsOf {design page} {
    set symbols [dict create TitleBlock [titleSymbol]]
    foreach id [dict get $page parts] {
        set part [dict get $design parts $id]
        set symbol [dict get $design symbols [dict get $part symbol]]
        set name [symbolName $symbol [dict get $part unit] [dict get $part style]]
        if {![dict exists $symbols $name]} {
            dict set symbols $name [symbolRecords $symbol [dict get $part unit] [dict get $part style]]
        }
    }
    set connectors {}
    foreach label [dict get $page labels] {
        if {[dict get $label kind] ne "label"} {
            lappend connectors [list [dict get $label kind] [dict get $label shape]]
        }
    }
    foreach sheet [dict get $page sheets] {
        foreach pin [dict get $sheet pins] {
            lappend connectors [list hierarchical [dict get $pin type]]
        }
    }
    foreach pair [lsort -unique $connectors] {
        set symbol [connector {*}$pair]
        dict set symbols [symbolName $symbol 1 1] [symbolRecords $symbol 1 1]
    }
    return [dict values $symbols]
}

# Hands all pages of a design over and gives how many records that took.
proc ::drawing::export {path} {
    set design [dict get $::designs::open $path]
    link::plugin initSVGList
    set count 0
    set number 0
    set schematic ""
    dict for {name page} [dict get $design pages] {
        if {[dict get $page schematic] ne $schematic} {
            set schematic [dict get $page schematic]
            link::plugin addToPageList [list Schematic $schematic]
        }
        # Symbols belong to the page that is open, so the page comes first.
        set records [lassign [pageRecords $design $page [incr number]] pageRecord]
        link::plugin addToPageList $pageRecord
        foreach symbol [symbolsOf $design $page] {
            foreach record $symbol {
                link::plugin addToLibList $record
                incr count
            }
        }
        foreach record $records {
            link::plugin addToPageList $record
            incr count
        }
    }
    # Nothing reads its third and fourth elements.
    link::plugin outputSVGFile [list $schematic $name "" "" $number]
    return $count
}

# Answers nothing for a design that is not open.
host::procedure convertToSVG {text} {
    set path [designs::find $text]
    if {$path eq ""} {
        return
    }
    set count [drawing::export $path]
    host::log "drew [dict size [dict get $::designs::open $path pages]] pages of $path in $count records"
    return 1
}
