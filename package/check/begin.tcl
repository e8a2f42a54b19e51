# How check.tcl and doctor.tcl begin: a package that was unpacked in part says so in a sentence.

# Reads files of this folder, and helper.dll. Answers "" or which one could not be read, and why.
proc begun {files} {
  foreach file $files {
    if {[catch {uplevel #0 [list source -encoding utf-8 [file join $::here $file.tcl]]} why]} {
      return "check\\$file.tcl is missing or damaged ($why)."
    }
  }
  if {[catch {load [file join $::here helper.dll] Helper} why]} {
    return "check\\helper.dll is missing, or Windows does not load it ([string map {\n { }} $why])."
  }
  return ""
}

# The files of the package that are not there, of those whose names match one of the patterns.
proc missingFiles {patterns} {
  set missing {}
  foreach {name digest} [checksums] {
    foreach pattern $patterns {
      if {[string match $pattern $name] && ![file exists [file join [file dirname $::here] $name]]} {
        lappend missing $name
      }
    }
  }
  return $missing
}

# Names and SHA-256 as checksums.txt lists them; {} without that file.
proc checksums {} {
  set all {}
  foreach {- digest name} [regexp -all -inline -line {^([0-9a-f]{64})  ([^\r\n]+)\r?$} \
      [encoding convertfrom utf-8 [readFile [file join [file dirname $::here] checksums.txt]]]] {
    lappend all $name $digest
  }
  return $all
}

set unpackAgain "Unpack the whole zip once more, with its folders. Windows or a virus scanner may have taken a file away."
