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

# Hands `count` records, a multiple of 10,000, to the command.
proc sendRecords {command count} {
  for {set sent 0} {$sent < $count} {incr sent 10000} {
    foreach record $::records {
      $command $record
    }
  }
}

proc exportPage {count} {
  initSVGList
  addToPageList {Schematic SCHEMATIC1}
  addToPageList {Page PAGE1 8000 11000 key}
  addToLibList {Name RES_0603}
  addToLibList {Line 0 0 30 0 31 0 0}
  sendRecords addToPageList $count
  outputSVGFile {SCHEMATIC1 PAGE1 8000 11000 key}
}
