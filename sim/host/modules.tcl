# Modules: a selected block goes to the companion, and what comes from there is placed.

namespace eval ::modules {}
foreach topic {elements parts library block objects placement} {
    source -encoding utf-8 [file join $::host::folder modules $topic.tcl]
}
unset topic

# Shares what is selected on the page as a module, and gives the references of the selected parts.
host::procedure getSelectPart {page} {
    lassign [pages::need] path
    if {![dict exists $::designs::open $path pages $page]} {
        error "no such page: $page"
    }
    set references [pages::selected $path $page]
    if {$references ne ""} {
        modules::share $path $page
    }
    return $references
}
