# What runs, and what an editor said.

proc looksAtCodePage {} {
  set page [encoding system]
  if {$page eq "cp936"} {
    fine "the code page is 936"
  } elseif {$page eq "utf-8"} {
    fine "the code page is 65001 (UTF-8)"
  } else {
    found "This machine's code page is [string range $page 2 end], not 936: names with Chinese characters have no name in it." \
        "Designs and folders with such names may not be reported. Windows' \"language for non-Unicode programs\": Chinese (Simplified)."
  }
}

# A port is listened on, by whom, and whether that is as it should be.
proc looksAtPorts {} {
  if {[set why [socketFault]] ne ""} {
    found "No program may listen on 127.0.0.1 here ($why), so the plug-in has no link." "Does a firewall forbid it?"
    return
  }
  foreach {port rightful whose} {9601 lantuzs "the companion's" 9610 capture "the editor's"} {
    if {![isTaken $port]} {
      fine "port $port, $whose, is free: [expr {$port == 9601 ? "no companion runs" : "no editor with the plug-in runs"}]"
      continue
    }
    set owner [ownerOf $port]
    if {[string match -nocase $rightful* $owner]} {
      fine "port $port belongs to $owner, as it should"
    } else {
      found "Port $port is taken by $owner; it should be $whose." \
          "End that program: the plug-in cannot use another port. Without a name, end companion and editors and look again."
    }
  }
}

proc looksAtEditors {} {
  foreach each [modulesNamed Vernoxa64.dll] {
    lassign $each process program path
    set who "[file tail $program] (process $process)"
    if {[string equal -nocase [file normalize $path] [file normalize $::dll]]} {
      fine "$who has this plug-in loaded; end it before you unpack another version"
    } else {
      found "$who has loaded another plug-in: [file nativename $path]." \
          "Change the line of the editor's scripts that loads it, or unpack the zip there."
    }
  }
}

# Where check.cmd works and check-editor.tcl writes, and what the latter wrote when it was last read in the editor.
proc looksAtTemporary {} {
  if {[catch temporaryFolder folder]} {
    found $folder "check.cmd and check-editor.tcl need it; the plug-in itself does not."
    return
  }
  set text [encoding convertfrom utf-8 [readFile [file join $folder "Vernoxa check" editor.txt]]]
  if {$text eq ""} {
    fine "check-editor.tcl was not read in the editor yet; it says what the editor's scripts lack"
    return
  }
  foreach line [split $text \n] {
    lassign [split [string trimright $line \r] \t] what how why
    if {$how eq "failed"} {
      found "In the editor, $what: $why" "[expr {[string match *procedures* $what]
          ? "Load the editor's own scripts before the plug-in." : "See docs\\troubles.html."}]"
    }
  }
}
