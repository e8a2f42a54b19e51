# Package reports: what properties the parts of a design or of a library have. Each property is told
# once, with the first value that it has anywhere; a bad path is the answer "Path error".

namespace eval ::packages {}

# Adds the properties of one part to those known; "" gives way to a value.
proc ::packages::add {knownName properties} {
    upvar 1 $knownName known
    dict for {name value} $properties {
        set name [parts::editorName $name]
        if {![dict exists $known $name] || [dict get $known $name] eq ""} {
            dict set known $name $value
        }
    }
}

proc ::packages::items {known} {
    set items {}
    dict for {name value} $known {
        lappend items [list $name $value]
    }
    return $items
}

host::procedure GetAllPackage {text} {
    set path [designs::find $text]
    if {$path eq ""} {
        return "Path error"
    }
    set known {}
    foreach {reference parts} [checks::partsOf [dict get $::designs::open $path]] {
        packages::add known [dict get [lindex $parts 0] properties]
    }
    link::plugin sendDsnPackageInfo [packages::items $known]
    return 1
}

# The properties of one part of a library, the editor's own among them.
proc ::packages::ofSymbol {symbol} {
    return [dict merge [dict create Name [dict get $symbol name] \
        "Pin Numbers Visible" [expr {[dict get $symbol pinNumbersHidden] ? "False" : "True"}] \
        "Pin Names Visible" [expr {[dict get $symbol pinNamesHidden] ? "False" : "True"}] \
        "Pin Count" [tcl::mathop::+ {*}[lmap pins [dict values [dict get $symbol pins]] {llength $pins}]]] \
        [dict get $symbol properties]]
}

host::procedure GetOlbAllPackage {path} {
    if {![file isfile $path]} {
        return "Path error"
    }
    set known {}
    foreach name [packages::names $path] {
        packages::add known [packages::ofSymbol [library::symbol $path $name]]
    }
    link::plugin sendOlbPackageInfo [packages::items $known]
    return 1
}

host::procedure GetOlbObjectPackage {path name} {
    if {![file isfile $path] || $name ni [packages::names $path]} {
        return "Path error"
    }
    set known {}
    packages::add known [packages::ofSymbol [library::symbol $path $name]]
    link::plugin sendOlbObjectPackageInfo [packages::items $known]
    return 1
}

proc ::packages::names {path} {
    return [lsort -unique [lmap key [dict keys [library::parts $path]] {lindex $key 0}]]
}

# Writes the symbols of a design as a library.
proc ::packages::write {path file} {
    library::create $file
    dict for {name symbol} [dict get $::designs::open $path symbols] {
        library::addLine $file [list part [lindex [split $name :] end] 0 \
            [expr {[dict get $symbol power] ? "Global" : "Part"}] $symbol]
    }
}
