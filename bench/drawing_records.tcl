# The records of a schematic page, 10,000 of them: wires, parts with their texts, ports, junctions and some graphics, as
# a host's script hands them over. Some texts are Chinese.
proc drawingRecord {number} {
  set x [expr {10 * ($number % 700)}]
  set y [expr {10 * ($number / 700)}]
  switch [expr {$number % 20}] {
    0 - 1 - 2 - 3 - 4 - 5 - 6 - 7 { return [list Line $x $y [expr {$x + 100}] $y 31 0 0] }
    8 { return [list Line $x $y $x [expr {$y + 200}] 31 0 BusWire] }
    9 - 10 - 11 { return [list Part $x $y [expr {$number % 4}] [expr {$number % 3}] RES_0603 INS$number] }
    12 - 13 - 14 { return [list Text $x $y R$number 20 1 -9 0] }
    15 { return [list Text $x $y [expr {$number % 100 == 15 ? "\u7535\u963b $number" : "10k 1%"}] 47 1 -11 1] }
    16 { return [list Junction $x $y 3 24 0] }
    17 { return [list OffPage $x $y 0 1 OFFPAGELEFT-L] }
    18 { return [list Box $x $y 120 80 29 0 1 1 0] }
    19 { return [list Polyline "$x,$y [expr {$x + 5}],$y $x,[expr {$y + 5}]" 29 0 0] }
  }
}

for {set number 0} {$number < 10000} {incr number} {
  lappend records [drawingRecord $number]
}

# The records of a library symbol: a body, pins, a text.
proc symbolRecords {number} {
  set records [list [list Name PACKAGE_$number] [list Box 0 0 120 [expr {20 * ($number % 7)}] 31 0 0 1 0]]
  for {set pin 0} {$pin < 8} {incr pin} {
    set shape [lindex {LINE "SHORT CLOCK" "LONG DOT" SHORT} [expr {$pin % 4}]]
    lappend records [list Pin [expr {120 * ($pin % 2)}] [expr {10 * $pin}] 0 0 31 0 $shape [lindex {LEFT RIGHT} [expr {$pin % 2}]]]
  }
  lappend records [list Line 10 10 30 [expr {$number % 50}] 31 0 0] [list Text 5 5 U$number 20 1 -9 0]
}

for {set number 0} {$number < 1000} {incr number} {
  lappend symbols {*}[symbolRecords $number]
}

# Hands `count` records of a list, again from its beginning when it ends, to the command.
proc send {records command count} {
  for {set left $count} {$left > 0} {incr left -[llength $records]} {
    foreach record [expr {$left < [llength $records] ? [lrange $records 0 $left-1] : $records}] {
      $command $record
    }
  }
}

proc sendRecords {command count} {
  send $::records $command $count
}

proc beginPage {} {
  initSVGList
  addToPageList {Schematic SCHEMATIC1}
  addToPageList {Page PAGE1 8000 11000 key}
  addToLibList {Name RES_0603}
  addToLibList {Line 0 0 30 0 31 0 0}
}

proc endPage {} {
  outputSVGFile {SCHEMATIC1 PAGE1 8000 11000 key}
}

proc exportPage {count} {
  beginPage
  sendRecords addToPageList $count
  endPage
}

proc exportSymbols {count} {
  beginPage
  send $::symbols addToLibList $count
  endPage
}

proc exportLibrary {count} {
  initGraphicFile
  send $::symbols addGraphicLibList $count
  outputGraphicFile library
}
