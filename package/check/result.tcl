# result.html and result.zip: what was tried and found, without names of the user, his machine or his designs.

# A zip of names and their bytes.
proc zipOf {files} {
  set body ""
  set directory ""
  foreach {name bytes} $files {
    set packed [zlib deflate $bytes 9]
    # version, flags, method, time, date, checksum, both sizes, length of the name, of what is more
    set head [binary format sssssiiiss 20 0 8 0 33 [zlib crc32 $bytes] [string length $packed] [string length $bytes] \
        [string length $name] 0]
    append directory [binary format a4sa*sssiia* PK\1\2 20 $head 0 0 0 0 [string length $body] $name]
    append body [binary format a4a*a*a* PK\3\4 $head $name $packed]
  }
  set count [expr {[llength $files] / 2}]
  return $body$directory[binary format a4ssssiis PK\5\6 0 0 $count $count [string length $directory] [string length $body] 0]
}

# Bytes in which neither these folders (each with the word for it) nor the names of user and computer stand, as text, in
# JSON, or in the digits of a packet.
proc scrubbed {text folders} {
  set names {}
  set words {}
  foreach {folder word} $folders {
    foreach folder [lsort -unique [list $folder [file normalize $folder]]] {
      lappend names $folder [file nativename $folder] [string map {/ \\\\} $folder]
      lappend words $word $word $word
    }
  }
  foreach {name word} {USERPROFILE %USER% USERNAME %USER% COMPUTERNAME %COMPUTER%} {
    if {[info exists ::env($name)] && [string length [encoding convertto utf-8 $::env($name)]] > 2} {
      lappend names $::env($name) [string map {\\ /} $::env($name)] [string map {\\ \\\\} $::env($name)]
      lappend words $word $word $word
    }
  }
  set map {}
  foreach name $names word $words {
    foreach encoding [list [encoding system] utf-8] {
      set bytes [encoding convertto $encoding $name]
      lappend map $bytes $word [binary encode hex $bytes] [binary encode hex $word]
    }
  }
  return [string map -nocase $map $text]
}

proc escaped {text} {
  return [string map {& &amp; < &lt; > &gt;} $text]
}

# A page of facts, each a name and a value, and results, each what was tried, how it went, what was wrong, milliseconds.
proc page {title facts results} {
  set rows ""
  foreach result $results {
    lassign $result name how why took
    append rows "<tr class=\"[string map {{ } -} $how]\"><td>[escaped $name]</td><td>$how</td><td>$took ms</td><td>[escaped $why]</td></tr>\n"
  }
  set about ""
  foreach {name value} $facts {
    append about "<tr><th>[escaped $name]</th><td>[escaped $value]</td></tr>\n"
  }
  set style {body { font: 16px/1.5 system-ui, sans-serif; max-width: 60rem; margin: 2rem auto; padding: 0 1rem; color: #222; }
table { border-collapse: collapse; margin: 1rem 0; } th, td { border: 1px solid #ccc; padding: .3em .6em; text-align: left; }
.failed { background: #fbe3e0; } .passed td:nth-child(2) { color: #17692f; } .not-tried { color: #666; }}
  return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>$title</title>
<style>$style</style></head><body>\n<h1>$title</h1>\n<table>\n$about</table>
<table><tr><th>Tried</th><th>Result</th><th>Time</th><th>What was wrong</th></tr>\n$rows</table>\n</body></html>\n"
}

# Windows' own, from TEMP; an error that says what is wrong with it.
proc temporaryFolder {} {
  if {[catch {set ::env(TEMP)} folder] || $folder eq ""} {
    error "The variable TEMP, which names the folder for temporary files, is not set."
  }
  if {![file isdirectory $folder]} {
    error "The folder for temporary files, which the variable TEMP names, is not there or no folder: $folder."
  }
  return [file normalize $folder]
}

# Writes NAME.html and NAME.zip, with the files (a name and bytes each) and without what `scrubbed` takes out of
# them; answers their folder.
proc writeResult {name title facts results files folders} {
  set folder [file join [temporaryFolder] "Vernoxa check"]
  file mkdir $folder
  set html [encoding convertto utf-8 [page $title $facts $results]]
  set table ""
  foreach {what value} $facts {
    append table "$what: $value\n"
  }
  foreach result $results {
    append table [join $result \t] \n
  }
  set all [list $name.html $html $name.txt [encoding convertto utf-8 $table] {*}$files]
  writeBytes [file join $folder $name.html] $html
  writeBytes [file join $folder $name.txt] [encoding convertto utf-8 $table]
  writeBytes [file join $folder $name.zip] [zipOf [concat {*}[lmap {inside bytes} $all {
    list $inside [scrubbed $bytes $folders]
  }]]]
  return $folder
}

proc writeBytes {path bytes} {
  set channel [open $path wb]
  puts -nonewline $channel $bytes
  close $channel
}
