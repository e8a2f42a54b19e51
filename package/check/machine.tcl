# What there is to know of this machine, and the words for it.

# A list of names and values. No name of a user, a computer or a design is among them.
proc machineFacts {} {
  lassign [windowsVersion] number wine
  lappend facts "Vernoxa" $::version
  lappend facts "Windows" [string trim "[registryValue {SOFTWARE\Microsoft\Windows NT\CurrentVersion} ProductName] $number"]
  if {$wine ne ""} {
    lappend facts "Wine" "$wine: this is not Windows"
  }
  lappend facts "Tcl" [info patchlevel] "code page" [encoding system]
  lappend facts "dots per inch" [dotsPerInch] "languages" [languages] "processors" $::env(NUMBER_OF_PROCESSORS)
  return $facts
}

proc registryValue {key name} {
  if {[catch {package require registry; registry get HKEY_LOCAL_MACHINE\\$key $name} value]} {
    return ""
  }
  return $value
}

# Windows may let a program listen on this address where another listens on all, so it is asked for that one first.
proc isTaken {port} {
  if {![catch {portOwner $port} owner] && $owner ne ""} {
    return 1
  }
  if {[catch {socket -server list -myaddr 127.0.0.1 $port} channel why]} {
    return [expr {[lindex [dict get $why -errorcode] 1] in {EADDRINUSE EACCES}}]
  }
  close $channel
  return 0
}

# Why no program may listen here at all; "" where one may.
proc socketFault {} {
  if {[catch {socket -server list -myaddr 127.0.0.1 0} channel]} {
    return $channel
  }
  close $channel
  return ""
}

# Who listens on a port, in words.
proc ownerOf {port} {
  if {[catch {portOwner $port} owner] || $owner eq ""} {
    return "a program that Windows does not name"
  }
  lassign $owner process program
  return "[expr {$program eq "" ? "a program of the system or of another user" : [file tail $program]}] (process $process)"
}

# Host scripts get paths as bare words, some in the bytes of the code page, and the plug-in reads 99 bytes of its own:
# installations lie in folders with plain names, and the check's has to.
proc isPlain {folder} {
  return [regexp {^[\w:/.~+-]{1,60}$} $folder] && [string is ascii $folder]
}

# A folder for the check alone, and {} or why it does not lie below TEMP. Windows' short name of a folder counts, so
# nothing may normalize what is answered here. {"" WHY} where no folder can be made.
proc workFolder {} {
  set temporary [temporaryFolder]
  set places [list $temporary]
  if {![catch {file attributes $temporary -shortname} short]} {
    lappend places $short
  }
  set below $places
  foreach {name folder} {LOCALAPPDATA /Temp ALLUSERSPROFILE {} PUBLIC {} SystemRoot /Temp SystemDrive /} {
    if {[info exists ::env($name)] && $::env($name) ne ""} {
      lappend places [string map {\\ /} $::env($name)]$folder
    }
  }
  set tried {}
  foreach place $places {
    set folder [file join $place vx[pid]]
    if {![isPlain $place]} {
      lappend tried "[file nativename $place] is too long or not plain (letters, digits, . _ ~ + -)"
    } elseif {[catch {file delete -force $folder; file mkdir $folder} why]} {
      lappend tried "[file nativename $place]: $why"
    } else {
      return [list $folder [expr {$place in $below ? "" : [join $tried {; }]}]]
    }
  }
  return [list "" [join $tried {; }]]
}

# Windows lets go of a module a moment after its process has ended.
proc removeFolder {folder} {
  for {set try 0} {$try < 100 && [catch {file delete -force $folder}]} {incr try} {
    after 50
  }
}
