# What lies where, and what stands in it.

# Bytes of a name in this machine's code page; -1 when it has characters that the page lacks.
proc bytesInPage {text} {
  set bytes [encoding convertto [encoding system] $text]
  return [expr {[encoding convertfrom [encoding system] $bytes] eq $text ? [string length $bytes] : -1}]
}

proc looksAtFolder {} {
  if {![file exists $::dll]} {
    found "bin\\Vernoxa64.dll is not there." "Unpack the whole zip once more, with its folders."
    return
  }
  set above [file join [file dirname $::base] LanTuZS.exe]
  if {[file exists [file join $::base LanTuZS.exe]]} {
    fine "the companion, LanTuZS.exe, is in the same folder"
  } elseif {[file exists $above]} {
    found "The zip was unpacked one folder too deep: LanTuZS.exe is in [file nativename [file dirname $above]]." \
        "Move what is in this folder to there."
  } else {
    found "The companion, LanTuZS.exe, is not in this folder, so the plug-in cannot start it." \
        "If the folder is the wrong one, unpack the zip into the companion's; if you start the companion yourself, all is well."
  }
  set length [bytesInPage [file nativename $::dll]]
  if {$length < 0} {
    found "The folder's name has characters that this machine's code page ([encoding system]) lacks." \
        "Unpack the zip into a folder whose name is plain."
  } elseif {$length > 99} {
    found "The path of the DLL is $length bytes long; the plug-in reads 99, and looks for its folders in the wrong place." \
        "Unpack the zip into a folder with a shorter path."
  }
}

# Every file of the package against its checksums.
proc looksAtPackage {} {
  set sums [checksums]
  if {![dict size $sums]} {
    found "checksums.txt is missing or empty, so the package is not whole." $::unpackAgain
    return
  }
  set wrong {}
  dict for {name digest} [dict remove $sums bin/Vernoxa64.dll] {
    if {[catch {fileDigest [file join $::base $name]} got] || $got ne $digest} {
      lappend wrong $name
    }
  }
  if {[llength $wrong]} {
    set count [expr {[llength $wrong] == 1 ? "One file is missing or not that" : "[llength $wrong] files are missing or not those"}]
    found "$count of the package: [join [lrange $wrong 0 4] {, }][expr {[llength $wrong] > 5 ? " ..." : ""}]" \
        "$::unpackAgain Files that you changed yourself need not worry you."
  }
  if {![file exists $::dll] || ![dict exists $sums bin/Vernoxa64.dll]} {
    return
  }
  set named [fileVersion $::dll]
  if {[fileDigest $::dll] eq [dict get $sums bin/Vernoxa64.dll]} {
    fine "bin\\Vernoxa64.dll is the one of this package, version $named"
  } else {
    set says [expr {$named eq "" ? "names no version" : "says that it is version $named"}]
    found "bin\\Vernoxa64.dll is not the one of this package: it $says; the package's is $::version." \
        "An editor that had it loaded kept the old one: end all editors, and unpack the zip once more."
  }
}

proc afterSpaces {text at} {
  regexp -indices -start $at {\A[\x01-\x20]*} $text spaces
  return [expr {[lindex $spaces 1] + 1}]
}

# Where a value of JSON ends, whose names and texts of the members go into the variable when it is an object. An error
# whose text is the place where the value stops to be JSON.
proc jsonEnd {text at {members -}} {
  upvar 1 $members found
  set found {}
  set at [afterSpaces $text $at]
  set open [string index $text $at]
  if {$open eq "" || [string first $open "\{\["] < 0} {
    if {![regexp -indices -start $at {\A(?:"(?:[^"\\]|\\["\\/bfnrt]|\\u[[:xdigit:]]{4})*"|-?\d[\d.eE+-]*|true|false|null)} $text value]} {
      error $at
    }
    return [expr {[lindex $value 1] + 1}]
  }
  set close [expr {$open eq "\{" ? "\}" : "\]"}]
  set at [afterSpaces $text [expr {$at + 1}]]
  if {[string index $text $at] eq $close} {
    return [expr {$at + 1}]
  }
  while 1 {
    if {$open eq "\{"} {
      set began [afterSpaces $text $at]
      if {[string index $text $began] ne "\""} {
        error $began
      }
      set at [jsonEnd $text $began]
      set name [string range $text $began+1 $at-2]
      set at [afterSpaces $text $at]
      if {[string index $text $at] ne ":"} {
        error $at
      }
      incr at
    }
    set began [afterSpaces $text $at]
    set at [jsonEnd $text $began]
    if {$open eq "\{"} {
      lappend found $name [string range $text $began $at-1]
    }
    set at [afterSpaces $text $at]
    if {[string index $text $at] eq $close} {
      return [expr {$at + 1}]
    } elseif {[string index $text $at] ne ","} {
      error $at
    }
    incr at
  }
}

# What the plug-in takes of the settings, as it does: the first member of a name counts, and nothing behind the object.
proc looksAtSettings {} {
  set file [file join $::base Config App.txt]
  if {![file exists $file]} {
    fine "there are no settings, Config\\App.txt: the plug-in works, and does not start the companion"
    return
  }
  if {[catch {open $file rb} channel]} {
    found "Config\\App.txt cannot be read[expr {[file isdirectory $file] ? ": it is a folder" : ""}]." \
        "Give yourself the right to read it, or put a file there; Config\\App.sample.txt shows what it holds."
    return
  }
  set text [read $channel]
  close $channel
  if {[string match "\xFF\xFE*" $text] || [string match "\xFE\xFF*" $text]} {
    found "Config\\App.txt is saved as UTF-16 (\"Unicode\"), which the plug-in does not read." \
        "Save it once more as ANSI or UTF-8."
    return
  }
  set at [expr {[string match "\xEF\xBB\xBF*" $text] ? 3 : 0}]
  if {[catch {jsonEnd $text $at settings} at]} {
    set line [regexp -all \n [string range $text 0 $at]]
    found "Config\\App.txt is not valid JSON (line [expr {$line + 1}]), so none of the settings counts." \
        "Mend that line: texts and names stand in double quotes, a comma between two, and a backslash is written twice. Config\\App.sample.txt shows how."
    return
  }
  foreach {setting good} {StartWithCadence {{"1"} {"0"} {""}} AlgMenuLang {{"EN"} {"CN"}}} {
    looksAtSetting $settings $setting $good
  }
}

proc looksAtSetting {settings setting good} {
  foreach {name value} $settings {
    set value [encoding convertfrom [encoding system] $value]
    if {$name eq $setting} {
      if {$value ni $good && $setting eq "StartWithCadence"} {
        found "\"StartWithCadence\" in Config\\App.txt is $value; only \"1\", with its quotes, starts the companion." \
            "Write \"StartWithCadence\":\"1\"."
      } elseif {$value ni $good} {
        found "\"AlgMenuLang\" in Config\\App.txt is $value; the plug-in knows the languages \"EN\" and \"CN\"." \
            "Write one of these two, with its quotes."
      }
      return
    }
  }
  foreach {name value} $settings {
    if {[string equal -nocase $name $setting]} {
      found "\"$name\" in Config\\App.txt is none of the settings: the plug-in knows \"$setting\"." "Write the name so."
    }
  }
}

# Windows marks what came from the internet, and may refuse to load it.
proc looksAtMark {} {
  foreach name {bin/Vernoxa64.dll LanTuZS.exe} {
    set file [file join $::base $name]
    if {[file exists $file] && [string match *ZoneId=3* [fileStream [file nativename $file] Zone.Identifier]]} {
      found "Windows holds [file nativename $name] for a file from the internet, and may block it." \
          "Properties of the zip, \"Unblock\", and unpack it once more."
    }
  }
}

proc looksAtLogs {} {
  set folder [file join $::base Script Log]
  set log [file join $folder schLog.txt]
  if {[file exists $folder] && ![file isdirectory $folder]} {
    found "Script\\Log is a file where a folder should be, so no log can be written." \
        "Delete or rename that file, and make a folder of that name."
  } elseif {![file isdirectory $folder]} {
    fine "there is no folder Script\\Log, so no log of the traffic is written; make it when somebody asks for a log"
  } elseif {[file exists $log] && [catch {open $log a} channel]} {
    found "The log Script\\Log\\schLog.txt cannot be written ([string trim [lindex [split $channel :] end]])." \
        "Take its \"read-only\" away, give yourself the right to write there, or delete it."
  } elseif {![file exists $log] && [catch {open [set try [file join $folder vernoxa-[pid].tmp]] {WRONLY CREAT EXCL}} channel]} {
    found "Nothing can be written in Script\\Log." "Give yourself the right to write in that folder."
  } else {
    close $channel
    catch {file delete $try}
    looksIntoLog [encoding convertfrom [encoding system] [readFile $log]]
  }
  set crashes [encoding convertfrom [encoding system] [readFile [file join $::base bin catchLog log.txt]]]
  if {$crashes ne ""} {
    set names [lsort -unique [regexp -all -inline -line {[^.\r\n]+(?=\r?$)} $crashes]]
    found "Something in the plug-in ended unexpectedly ([join $names {, }]): bin\\catchLog\\log.txt." \
        "The editor went on; please open an issue on the page from which you downloaded the zip, with that file. When it is told, delete it."
  }
}

proc looksIntoLog {text} {
  if {[regexp {start-up script: invalid command name "([^"]+)"} $text - name]} {
    found "When the plug-in was loaded, the editor's scripts had no procedure \"$name\", and the rest of the start was left out." \
        "Load the editor's own scripts before the plug-in."
  } elseif {[regexp -line {start-up script: couldn't open socket[^\r]*} $text why]} {
    found "When the plug-in was loaded, port 9610 was taken ($why), so this editor has no link to the companion." \
        "End all editors, and start the one that is to have the link."
  } elseif {[regexp -line {start-up script: ([^\r]+)} $text - why]} {
    found "When the plug-in was loaded, the editor's scripts said: $why" "Look at the editor's own scripts."
  } elseif {$text ne ""} {
    fine "the log of the last start names no trouble"
  }
}
