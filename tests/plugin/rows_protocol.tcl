# docs/protocol.json held against the plug-in: what it calls needed is refused when it is missing, nothing is called that
# does not stand there, and all that stands there happens. After rows.tcl, whose calls count. What messages hold is tried
# by rows_said.py.

# --- requests ------------------------------------------------------------------------------------------------------

proc ask {request data} {
  set ::scripts {}
  set ::caller [list [dict get $request endpoint] [dict get $request name]]
  return [unhex [asked [dict get $request endpoint] \
      [hex "{\"Command\":\"[dict get $request name]\",\"Data\":{[join $data ,]}}"]]]
}

set values {text {"C:\\a.dsn"} number 3 textOrNumber 3 array {[]}}
set wrong {text {"" true 3 null [] {{}}} number {"" true {"x"} {"1.5"} []} textOrNumber {"" true null []} array {"" true 3 {"[]"} {{}}}}
foreach request [dict get $protocol requests] {
  dict set requests [list [dict get $request endpoint] [dict get $request name]] $request
  set good {}
  foreach member [dict get $request members] {
    if {[dict get $member needed]} {
      dict set kinds [dict get $member name] [dict get $member kind]
      dict set good [dict get $member name] [dict get $values [dict get $member kind]]
    }
  }
  set members [dict keys $good]
  foreach spoilt $members {
    foreach value [dict get $wrong [dict get $kinds $spoilt]] {
      set data [lmap {name fine} $good {
        if {$name eq $spoilt && $value eq ""} continue
        string cat \" $name \": [expr {$name eq $spoilt ? $value : $fine}]
      }]
      set what "[dict get $request name] with $spoilt [expr {$value eq "" ? "missing" : $value}]"
      check $what [ask $request $data] [refused [dict get $request name] [dict get $request refusal]]
      check "$what: scripts" $::scripts {}
    }
  }
  if {[llength $members]} {
    set reply [ask $request [lmap {name fine} $good {string cat \" $name \": $fine}]]
    check "[dict get $request name] with what it needs is refused" [string match "*[dict get $request refusal]*" $reply] 0
  }
}

# Placing, whose scripts name libraries at random.
set answers {IsSchematicViewActive 1}
set module "\"dsnDatPath\":\"[string map {\\ \\\\} $base]\\\\module.json\""
foreach name {PlaceDsnLibPartModule PlaceDSNModule} {
  ask [dict get $requests [list packetParser $name]] \
      [list $module {"PartIndex":0,"ViewBoxWidth":10,"ViewBoxHeight":10,"PartName":"RES","Package":"P"}]
}

# --- commands ------------------------------------------------------------------------------------------------------

# What was sent or answered: a message, or nothing.
proc messageIn {packet} {
  return [expr {[regexp {^(7b[0-9a-f]*7d)$} $packet] ? [::json::json2dict [unhex $packet]] : ""}]
}

proc checkMessage {command packet} {
  lappend ::said $packet $packet
  set message [messageIn $packet]
  set documented 0
  foreach row [dict get $::protocol messages] {
    if {[dict get $row name] eq [dict get $message Command] && $command in [dict get $row sentBy]} {
      check "$command: envelope" [dict keys $message] [dict get $row envelope]
      incr documented
    }
  }
  check "$command: documented messages like $message" $documented 1
}

proc command {name args} {
  set ::scripts {}
  set ::caller [list command $name]
  set result [{*}[list $name {*}$args]]
  foreach script $::scripts {
    if {[regexp {^sendPacketGlobalHandle "(.*)"$} $script all packet]} {
      checkMessage $name $packet
    }
  }
  set row [dict get $::commands $name]
  switch [dict get $row answer kind] {
    nothing {check "$name: answers nothing" $result ""}
    packetText {checkMessage $name $result}
    plain {check "$name: answers no packet text" [messageIn $result] ""}
  }
}

set commands {}
foreach row [dict get $protocol commands] {
  dict set commands [dict get $row name] $row
}
set record {Text 1 2 电阻器 3 9 0 0}
set line {{x;10k;R1;RES;0603;2}}
set finding {R1 R2 top main 300 200}
foreach call [list \
    {ReadOpenPath {C:\a.dsn}} {sendSaveFile C:/a.dsn} {sendCloseFile C:/a.dsn} tryUpdateBom [list sendAddToBom $line] \
    [list sendRemoveFromBom $line] getOpenFileCount getGenerateGuid selectAddOrRemoveFromBom serverLinkBreak initSVGList \
    {addToPageList {Page P 1 2 K}} [list addToPageList $record] initSVGList {addToPageList {Page P 1 2 K}} \
    {addToLibList {Name S}} [list addToLibList $record] {outputSVGFile {top P {} {} K}} initMarketFile \
    {addMarketPartList {Junction 1 2}} {addMarketLibList {Name RES}} {outputMarketFile m 10 20 0} \
    {sendUploadMarket 2 1 0 {1,R1,RES;2,R2} {N1;N2} {k}} getOlbPath getNewOlbPath [list sendRefRepetition NoRefNum {*}$finding] \
    sendRefRepetition [list sendIllegalChar {*}$finding] sendIllegalChar [list sendPinNC {*}$finding] sendPinNC \
    [list sendNetlist ValueDiff {*}$finding] sendNetlist {sendOlbPackageInfo {{Value 10k}}} \
    {sendDsnPackageInfo {{Value 10k}}} {sendOlbObjectPackageInfo {{Value 10k}}} {checkCharIllegal R1} initGraphicFile \
    {addGraphicLibList {Name S}} {outputGraphicFile g} PlacePartProperty] {
  command {*}$call
}
check "properties of a part" [lindex $scripts 0] [string cat \
    {placePart SetProperty -1 [list [list Location "10 10"] [list Rotation 0] [list Mirror 0] [list Package P] } \
    {[list PartIndex 0] [list Designator ""]] [list [list "PCB Footprint" ] [list "Part Number" ] } \
    {[list "Part Name" RES] [list "Part Reference" 1] [list "Value" ""]] [list]}]
ask [dict get $requests {packetParser PlaceDSNModule}] [list $module]
command placeMarketPart
command removeDatFile

# --- all that was called, and nothing else -------------------------------------------------------------------------

foreach {name row} $commands {
  dict set requests [list command $name] $row
}
dict for {caller row} $requests {
  set seen [expr {[dict exists $called $caller] ? [dict keys [dict get $called $caller]] : ""}]
  check "procedures called by $caller" [lsort $seen] [lsort [dict get $row calls]]
}
foreach procedure [dict get $protocol procedures] {
  set name [dict get $procedure name]
  set callers [dict get $procedure calledBy]
  check "$name is called when the plug-in is loaded" [dict exists $called load $name] [expr {!![dict get $callers load]}]
  check "$name has a caller" [expr {[dict get $callers load] || [concat {*}[dict values [dict remove $callers load]]] ne ""}] 1
}
# Those that ./dev check-host calls with, but for library parts, whose words are as many as the module says.
foreach line [split [readUtf8 $repository/tools/docs/procedures.txt] \n] {
  if {[regexp {^called (?!placeLib|setPin)\S+ (.*)} $line all script]} {
    check "$script is evaluated in this form" [dict exists $forms [formOf [string map {{\\} \\} $script]]] 1
  }
}
