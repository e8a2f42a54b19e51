# What a file holds that is not read: named once, so that nothing is lost silently.

namespace eval ::kicad {
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
    } {
        foreach name $names {
            set read($where,$name) 1
        }
    }
    unset where names name
}

# Counts the lists of a node that are not read, by name.
proc ::kicad::countUnread {countsName node where} {
    upvar 1 $countsName counts
    variable read
    foreach item [lrange $node 1 end] {
        if {[string index $item 0] eq "\1"} {
            set name [string range [lindex $item 0] 1 end]
            if {![info exists read($where,$name)]} {
                dict incr counts $name
            }
        }
    }
}

# "NAME.kicad_sch holds what is not shown: 2 image, 1 rule_area", or nothing. `symbols` are those of its
# library that were not looked at before.
proc ::kicad::unreadNote {file root symbols} {
    set counts {}
    countUnread counts $root schematic
    foreach node [children $root symbol] {
        countUnread counts $node symbol
    }
    foreach node [children $root sheet] {
        countUnread counts $node sheet
    }
    foreach node $symbols {
        countUnread counts $node library
        foreach body [children $node symbol] {
            countUnread counts $body body
        }
    }
    if {$counts eq ""} {
        return {}
    }
    set items [lmap {name count} [lsort -stride 2 $counts] {string cat $count " " $name}]
    return [list "[file tail $file] holds what is not shown: [join $items {, }]"]
}
