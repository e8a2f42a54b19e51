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
  if {[catch {socket -server list -myaddr 127.0.0.1 $port} channel]} {
    return 1
  }
  close $channel
  return 0
}

# Who listens on a port, in words.
proc ownerOf {port} {
  if {[catch {portOwner $port} owner] || $owner eq ""} {
    return "a program that Windows does not name"
  }
  lassign $owner process program
  return "[expr {$program eq "" ? "a program of the system or of another user" : [file tail $program]}] (process $process)"
}

# The folder for temporary files, by a name that the plug-in can read.
proc shortTemp {} {
  set folder [file normalize $::env(TEMP)]
  if {[encoding convertfrom [encoding system] [encoding convertto [encoding system] $folder]] ne $folder
      || [string length [encoding convertto [encoding system] $folder]] > 60} {
    set folder [file normalize [file attributes $folder -shortname]]
  }
  return $folder
}

# Windows lets go of a module a moment after its process has ended.
proc removeFolder {folder} {
  for {set try 0} {$try < 100 && [catch {file delete -force $folder}]} {incr try} {
    after 50
  }
}
