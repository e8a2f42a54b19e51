# What a file holds that is not read: named once, so that nothing is lost silently.

namespace eval ::kicad {
    # The name of the file that is read, and file -> what it holds that is not shown -> how often, or "".
    variable reading ""
    variable unread {}
    # Lists that are read, or say nothing about what a page shows and joins: where,name.
    variable read
    array set read {}
    foreach {where names} {
        schematic {version generator generator_version uuid paper title_block lib_symbols symbol sheet
            sheet_instances symbol_instances embedded_fonts wire bus bus_entry bus_alias junction no_connect
            polyline rectangle circle arc bezier text text_box table label global_label hierarchical_label}
        symbol {lib_name lib_id at mirror unit convert body_style in_bom on_board exclude_from_sim dnp
            fields_autoplaced uuid property pin instances default_instance}
        sheet {at size stroke fill fields_autoplaced uuid property pin instances in_bom on_board
            exclude_from_sim dnp}
        library {extends power pin_numbers pin_names in_bom on_board exclude_from_sim property symbol
            embedded_fonts embedded_files}
        body {pin rectangle circle arc polyline bezier text text_box unit_name}
        drawing {at pts start mid end center radius size stroke fill color diameter shape effects margins uuid
            property iref members exclude_from_sim fields_autoplaced border separators column_count column_widths
            row_heights cells table_cell span}
    } {
        foreach name $names {
            set read($where,$name) 1
        }
    }
    unset where names name
}

# Something in the file that is read is not shown.
proc ::kicad::unread {what {count ""}} {
    variable reading
    variable unread
    dict set unread $reading $what $count
}

# Counts the lists of a node that are not read, by name.
proc ::kicad::countUnread {node where} {
    variable reading
    variable read
    variable unread
    foreach item [lrange $node 1 end] {
        set name [kind $item]
        if {$name ne "" && ![info exists read($where,$name)]} {
            unread $name [expr {[dict exists $unread $reading $name] ? [dict get $unread $reading $name] + 1 : 1}]
        } elseif {$name in {cells table_cell}} {
            countUnread $item drawing
        }
    }
}

# The lists of a file. `symbols` are those of its library that were not looked at before.
proc ::kicad::countAllUnread {root symbols} {
    countUnread $root schematic
    foreach item $root {
        switch -exact -- [set kind [kind $item]] {
            symbol - sheet {countUnread $item $kind}
            wire - bus - bus_entry - junction - no_connect - polyline - rectangle - circle - arc - bezier - text -
            text_box - table - label - global_label - hierarchical_label {countUnread $item drawing}
        }
    }
    foreach node $symbols {
        countUnread $node library
        foreach body [children $node symbol] {
            countUnread $body body
        }
    }
}

# A sentence for each file: "NAME.kicad_sch holds what is not shown: 2 image, 1 rule_area".
proc ::kicad::unreadNotes {} {
    variable unread
    set notes {}
    dict for {file counts} $unread {
        set items [lmap {what count} [lsort -stride 2 $counts] {string trimleft "$count $what"}]
        lappend notes "$file holds what is not shown: [join $items {, }]"
    }
    return $notes
}
