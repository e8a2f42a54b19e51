# The plug-in's side of sharing and placing, in plain Tcl: records become a module, and a module the
# calls that place it. The layouts stand here once more, so that the host's own are checked by them.

namespace eval ::fake {
    variable folder ""
    # Record kind -> what its elements become: name and positions.
    variable libraryData {
        Pin {StartPoint {1 2} HotSpot {3 4} PinName 6 PinNum 5 PinType 7}
        Text {BoundingBox {1 2 3 4} Text 5 Color 6}
        Bezier {BezierStart {1 2} Color 3 Style 4 Width 5 path 6}
        Line {Start {1 2} EndPos {3 4} Color 5 Style 6 Width 7}
        Box {UpperLeft {1 2} LowerRight {3 4} Color 5 Style 6 Width 7 FillStyle 8 HatchStyle 9}
        Arc {BoundingBox {1 2 3 4} Start {5 6} EndPos {7 8} Color 9 Style 10 Width 11}
        Ellipse {BoundingBox {1 2 3 4} Color 5 LineStyle 6 LineWidth 7 FillStyle 8 HatchStyle 9}
        Polyline {PolylineStart {1 2} Color 3 Style 4 Width 5 path 6}
        Polygon {PolygonStart {1 2} Color 3 Style 4 Width 5 FillStyle 6 HatchStyle 7 path 8}
    }
    variable objectData {
        Wire {WireStart {1 2} WireEndPos {3 4} Color 5 Style 6 Width 7}
        BusEntry {BusEntryStart {1 2} BusEntryEndPos {3 4} Color 5}
        Part {Location {1 2} Rotation 3 Mirror 4 Package 5}
        Alias {Location {1 2} Text 3 Color 4 Font 6 Rotation 7}
        Text {Text 3 Color 4 "Text Location X-Coordinate" 1 "Text Location Y-Coordinate" 2 Font 6 Rotation 7}
        Polyline {Color 2 Style 3 Width 4 path 1}
        Junction {StartX 1 StartY 2}
    }
    foreach {kind like} {BusWire Wire Global Part Port Part OffPage Part} {
        dict set objectData $kind [dict get $objectData $like]
    }
    # Names that may be set on objects of modules that are not one's own.
    variable hostNames {"PCB Footprint" Name "Part Reference" Reference "Part Number" "Part Name" Value Graphic}
}

proc ::fake::dataOf {layout record} {
    set data {}
    foreach {name positions} $layout {
        lappend data [list $name [join [lmap position $positions {lindex $record $position}] " "]]
    }
    return $data
}

proc initMarketFile {} {
    set ::fake::parts {}
    set ::fake::objects {}
}

proc addMarketLibList {record} {
    set kind [lindex $record 0]
    switch -exact -- $kind {
        Name {
            lassign $record - name type x1 y1 x2 y2 index designator
            set key [list [string range $name 0 30] [expr {$type eq "Part" ? $index : ""}] $type]
            set ::fake::skip [dict exists $::fake::parts $key]
            if {!$::fake::skip} {
                set ::fake::part $key
                dict set ::fake::parts $key [dict create designator [expr {$type eq "Part" ? $designator : ""}] \
                    box [list $x1 $y1 $x2 $y2] properties {} displayed {} children {}]
            }
            return
        }
    }
    if {$::fake::skip} {
        return
    }
    dict update ::fake::parts $::fake::part part {
        switch -exact -- $kind {
            PartProperty {dict set part properties [lindex $record 1] [fake::kept [lindex $record 2]]}
            DispProperty {dict lappend part displayed [lrange $record 1 end]}
            Property {
                set children [dict get $part children]
                set last [lindex $children end]
                dict set part children [lreplace $children end end [lreplace $last 2 2 \
                    [concat [lindex $last 2] [list [list [lindex $record 1] [fake::kept [lindex $record 2]]]]]]]
            }
            default {
                dict lappend part children [list [expr {$kind eq "Line" ? "line" : $kind}] \
                    [fake::dataOf [dict get $::fake::libraryData $kind] $record] {}]
            }
        }
    }
}

proc ::fake::kept {value} {
    return [expr {[string match *$* $value] ? "" : [string map {@ _} $value]}]
}

proc addMarketPartList {record} {
    set last [lindex $::fake::objects end]
    switch -exact -- [lindex $record 0] {
        Property {dict set last properties [lindex $record 1] [fake::kept [lindex $record 2]]}
        DispProperty {
            lassign $record - x y name value colour font size rotation
            dict lappend last displayed [list Name $name] [list Value [string map {@ _} $value]] \
                [list Color $colour] [list Rotation $rotation] [list FontId $font] [list Size $size] \
                [list Start "$x $y"]
        }
        default {
            set data [fake::dataOf [dict get $::fake::objectData [lindex $record 0]] $record]
            lappend ::fake::objects [dict create kind [lindex $record 0] data $data properties {} displayed {}]
            return
        }
    }
    lset ::fake::objects end $last
}

proc outputMarketFile {name width height unused} {
    set ::fake::size [list $width $height]
    return ModuleLib.json
}

proc sendUploadMarket {args} {
    set ::fake::offered $args
    return 0
}

# Everything of the last module, to be placed or compared.
proc ::fake::module {} {
    return [dict create parts $::fake::parts objects $::fake::objects size $::fake::size]
}

# What placing adds to every object's properties is taken off again.
proc ::fake::plainModule {} {
    set module [module]
    dict set module objects [lmap object [dict get $module objects] {
        dict replace $object properties [dict remove [dict get $object properties] NimbMarket MarketResID]
    }]
    return $module
}

proc getNewOlbPath {} {
    return $::fake::folder/new.olb
}

# Paths become points; the two ways of writing them are the plug-in's.
proc ::fake::placedData {data commas} {
    set items {}
    foreach item $data {
        lassign $item name value
        if {$name ne "path"} {
            lappend items $item
            continue
        }
        foreach point $value {
            lappend items [list NewPoint [expr {$commas ? $point : [string map {, " "} $point]}]]
        }
    }
    return $items
}

proc ::fake::placeLibrary {module} {
    library::create $::fake::folder/new.olb
    foreach command {placeLibPart setPinNum} {
        set seen {}
        dict for {key part} [dict get $module parts] {
            lassign $key name index type
            # Placing takes each name once.
            if {[dict exists $seen $name]} {
                continue
            }
            dict set seen $name 1
            set graphics [lmap child [dict get $part children] {
                list [lindex $child 0] [placedData [lindex $child 1] 1] [lindex $child 2]
            }]
            lassign [lmap text [list $index $type [dict get $part designator]] {
                expr {$text eq "" ? [list ""] : $text}
            }] index type designator
            $command $::fake::folder/new.olb $name $index $type [dict get $part box] \
                [packages::items [dict get $part properties]] $graphics {} $designator
        }
    }
}

# `own` is 1 for a module of the user's own, whose properties all pass.
proc ::fake::placeObjects {module own} {
    foreach object [dict get $module objects] {
        set properties [dict get $object properties]
        if {!$own} {
            set properties [dict filter $properties script {name value} {expr {$name in $::fake::hostNames}}]
        }
        placePart [dict get $object kind] $own [concat [packages::items $properties] \
            {{NimbMarket x} {MarketResID 1}}] [placedData [dict get $object data] 0] [dict get $object displayed]
    }
}

proc placeMarketPart {} {
    fake::placeLibrary $::fake::toPlace
    fake::placeObjects $::fake::toPlace $::fake::own
}

proc PlacePartProperty {} {
    uplevel #0 {placePart SetProperty -1 {{Location "10 10"}} {{"Part Reference" U1A} {Value 国产}} {}}
}
proc afterPlace {} {lappend ::told placed}
proc removeDatFile {} {lappend ::told cleaned}
