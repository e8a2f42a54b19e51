# The editor's actions and menus, and the procedures that they call.

namespace eval ::menu {
    # Action name -> dict: enable key handler view.
    variable actions {}
}

host::procedure RegisterAction {name enable key handler view} {
    dict set ::menu::actions $name [dict create enable $enable key $key handler $handler view $view]
    host::log "action $name -> $handler"
    return 1
}

host::procedure UnregisterAction {name} {
    dict unset ::menu::actions $name
    host::log "action $name removed"
    return 1
}

host::procedure InsertXMLMenu {menu} {
    host::log "menu $menu"
    return 1
}

# Runs the action that is handled by `handler`, as its key or menu entry would.
proc ::menu::invoke {handler} {
    variable actions
    dict for {name action} $actions {
        if {[dict get $action handler] ne $handler} {
            continue
        }
        set enable [dict get $action enable]
        if {$enable ne "alwaysEnable" && ![$enable]} {
            return "disabled"
        }
        return [$handler]
    }
    return "no such action"
}

host::procedure ShowMainForm {} {
    link::plugin execTool
}

# The schematic view's end-of-command event.
host::procedure MouseClick {} {
    return
}

host::procedure exitOpration {} {
    foreach path [designs::paths] {
        designs::close $path
    }
}

# Numbers of the standard Windows file menu; 57603 is ID_FILE_SAVE of afxres.h.
host::procedure MenuCommand {number} {
    set path [dict get $::pages::active path]
    switch -exact -- $number {
        57602 {designs::close $path}
        57603 {saveFile $path}
        default {host::log "menu command $number is not known here"}
    }
}

# The editor's version decides whether BOM texts are in the code page.
host::procedure GetProductVersion {} {
    return 17.4-2019
}
