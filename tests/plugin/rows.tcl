# Every row of both request tables through the packet doors: the scripts that the host sees, raw, and the replies, byte
# for byte. Runs in any interpreter that has the plug-in's commands: the native test program, or Tcl under Wine. The host
# is that of rows_host.tcl.

proc hex {text} {
  return [binary encode hex [encoding convertto cp936 $text]]
}

proc unhex {text} {
  return [encoding convertfrom cp936 [binary decode hex $text]]
}

# One request: what the host answers by procedure name, the scripts it must see in their order, and the reply.
proc row {door request answers scripts reply} {
  set stands [list BASE [string map {\\ \\\\} $::base]]
  set ::answers $answers
  set ::scripts {}
  set ::caller [list $door [expr {[regexp {"Command":"(\w+)"} $request all name] ? $name : ""}]]
  set got [unhex [asked $door [hex $request]]]
  check "$request: reply" $got [string map $stands $reply]
  check "$request: scripts" [join $::scripts \n] [string map $stands [join $scripts \n]]
}

proc commandRow {door command data answers scripts reply} {
  row $door "{\"Command\":\"$command\",\"Data\":$data}" $answers $scripts \
      [string map [list % "\"Command\":\"${command}_EndResult\",\"Result\":"] $reply]
}
interp alias {} companion {} commandRow packetParser
interp alias {} thread {} commandRow packetParserForPthread

proc refused {command {text "command error"}} {
  return "{\n\t\"ErrInfo\":\t\"$text\",\n\t\"Result\":\t\"1\",\n\t\"Data\":\t{\n\t},\n\t\"Command\":\t\"${command}_EndResult\"\n}"
}

set path {{"ProjectPath":"C:\\设计\\a.dsn"}}
set raw {"C:\设计\a.dsn"}
set doubled {"C:\\设计\\a.dsn"}
set redraw [list "saveFile $doubled" ZoomIn ZoomOut]

# What is no request. No packet text comes back encoded again behind a box, which waits for a user on a real system.
foreach door {packetParser packetParserForPthread} {
  if {$tcl_platform(platform) ne "windows"} {
    check "$door, no packet text" [list [$door zz] [$door "7b7d 7b7d"]] [list 7a7a [hex "7b7d 7b7d"]]
  }
  row $door {[1,2} {} {} ""
  row $door {{"Command":"理"}} {} {} [refused 理 [expr {$door eq "packetParser" ? "command error" : "command1 error"}]]
}

# Views and pages
companion GetActiveProPages {{}} {GetActiveProPages {{C:/a.dsn P1 {Page 2}} {C:/b.dsn}}} GetActiveProPages \
    {{"Data":{"ErrInfo":"","Open":[{"ProjectPath":"C:/a.dsn","Pages":["P1","Page 2"]},{"ProjectPath":"C:/b.dsn","Pages":[]}]},%"0"}}
companion GetActiveProPages {{}} {GetActiveProPages {{}}} GetActiveProPages \
    {{"Data":{"ErrInfo":"","Open":[{"ProjectPath":"","Pages":[]}]},%"0"}}
companion GetActiveProPages {{}} {} GetActiveProPages {{"Data":{"ErrInfo":""},%"1"}}
companion GetActiveProPages null {GetActiveProPages {error no project}} GetActiveProPages {{"Data":{"ErrInfo":"no project"},%"1"}}
foreach {command procedure} {SetPlacePortType KX_PlaceWirePort SetPlaceOffpageType KX_PlaceWireOffPage} {
  companion $command {{"Type":3}} [list $procedure 1] [list "$procedure 3 {}"] {{"Data":{"ErrInfo":""},%"0"}}
  companion $command {{"Type":"-2"}} [list $procedure busy] [list "$procedure -2 {}"] {{"Data":{"ErrInfo":"busy"},%"0"}}
}
set joined {convertToSVG"C:\设计\a.dsn"}
companion CreateSVG $path {convertToSVG done} [list $joined "convertToSVG $raw"] \
    {{"Data":{"SVGPath":"BASE\\Cache\\Output","PreviewPic":"BASE\\Cache\\Output\\Preview.bmp"},%"0","ErrInfo":""}}
companion CreateSVG $path {} [list $joined "convertToSVG $raw"] {{"Data":{},%"1","ErrInfo":""}}
companion CreateSVG $path {convertToSVG {error disk}} [list $joined "convertToSVG $raw"] {{"Data":{},%"1","ErrInfo":"disk"}}
# A space would make a command's name of what stands before it.
companion CreateSVG {{"ProjectPath":"x/../../w/mark.bat y"}} {} {{convertToSVG "x/../../w/mark.bat y"}} {{"Data":{},%"1","ErrInfo":""}}
companion CreateSVG {{"ProjectPath":"x;b\n{*}"}} {} [list "convertToSVG\"x\\;b\\n{*}\"" "convertToSVG \"x;b\n{*}\""] {{"Data":{},%"1","ErrInfo":""}}

# References, values and jumps
companion AdjustRefAndValue {{}} {ReplaceRefAndValue 1} ReplaceRefAndValue {{"Data":{},%"0"}}
companion AdjustRefAndValue {{}} {ReplaceRefAndValue 没有选中} ReplaceRefAndValue {{"Data":{},%"1","ErrInfo":"没有选中"}}
companion RenameRef {{"Type":1.9}} {RenameRef 1} {{RenameRef 1}} {{"Data":{},%"0"}}
companion RenameRef {{"Type":1e99}} {RenameRef no} {{RenameRef 2147483647}} {{"Data":{},%"1","ErrInfo":"no"}}
companion JumpToDsn {{"ProjectPath":"C:\\a.dsn","PageName":"A[;fanxiegan;]B","PagePos":"10 20","Sch":"S[x]"}} {} \
    [list {JumpToDsn "C:\\a.dsn" "S\[x]" "A\\B" [list 10 20]}] {{"Data":{},%"0"}}
companion JumpToPartRef {{"ProjectPath":"C:\\a.dsn","PartRef":"R1"}} {} [list {gotoLocation "C:\a.dsn" R1}] {{"Data":{},%"0"}}
companion JumpToPartRef {{"ProjectPath":"C:\\a.dsn","PartRef":"R[1];$x"}} {gotoLocation {error none}} \
    [list {gotoLocation "C:\a.dsn" R\[1]\;\$x}] {{"Data":{},%"1","ErrInfo":"exec error"}}
companion JumpToPartRef {{}} {} {} {{"Data":{},%"1","ErrInfo":"No PartRef"}}
companion JumpToPartRef {{"PartRef":"R1"}} {} {} [refused JumpToPartRef]

# Reports: the results come as messages of their own
foreach {command procedure} {
  GetDsnAllPackageInfo GetAllPackage GetOlbAllPackageInfo GetOlbAllPackage DsnCheck RunCheck
  DsnCheckActiveProj RunCheckActiveProj
} {
  companion $command $path [list $procedure "Path error"] [list "$procedure $raw"] ""
}
companion GetOlbObjectPackageInfo {{"ProjectPath":"C:\\a.olb","ObjName":"R 1"}} {} [list {GetOlbObjectPackage "C:\a.olb" R 1}] ""

# Bills of materials and their view
set lists {::capGenerateBOMUtil::getStickList {{1;10k;R1;RES;0603;2} {NULL;null;C1;CAP;;2;more}} ::capGenerateBOMUtil::getNotStickList {{2;a;R2;RES;0603;2}}}
set asked {GetProductVersion ::capGenerateBOMUtil::getStickList ::capGenerateBOMUtil::getNotStickList ::capGenerateBOMUtil::getNoPartNumberList}
companion GenerateBOM $path $lists \
    [concat GetProductVersion [list "generateBOMForPath $raw \"Part Number\" \"Part Name\""] $asked] \
    {{"Data":{"Stick":[{"PartNumber":"1","Value":"10k","PartRef":"R1","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"},{"PartNumber":"","Value":"null","PartRef":"C1","PartName":"CAP","PCBFootprint":"","PinNumber":"2"}],"NotStick":[{"PartNumber":"2","Value":"a","PartRef":"R2","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"}],"NotPartNumber":[]},%"0"}}
companion GenerateBOM {{"ProjectPath":"a.dsn","PartNumberKey":"编号","PartNameKey":""}} {GetProductVersion 16.5 generateBOMForPath {error no}} \
    [concat GetProductVersion [list {generateBOMForPath "a.dsn" "编号" "Part Name"}] $asked] \
    {{"Data":{"Stick":[],"NotStick":[],"NotPartNumber":[]},%"0"}}
companion GenerateBOM {{"ProjectPath":"a.dsn"}} {GetProductVersion 16.5 ::capGenerateBOMUtil::getNotStickList {{料;电阻;R2;RES;0603;2}}} \
    [concat GetProductVersion [list {generateBOMForPath "a.dsn" "Part Number" "Part Name"}] $asked] \
    {{"Data":{"Stick":[],"NotStick":[{"PartNumber":"料","Value":"电阻","PartRef":"R2","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"}],"NotPartNumber":[]},%"0"}}
companion SwitchStickOrNotStick {{}} {switchStickOrNotStick 选中} {{switchStickOrNotStick 0}} {{"Data":{"ErrInfo":"选中"},%"0"}}
foreach {command procedure} {SetToNotStick setRefToNotUse SetToStick setRefToUse} {
  companion $command {{"ProjectPath":"C:\\设计\\a.dsn","item":[{"PartRef":"R1"},7,{"PartRef":2},{"PartRef":"C1"}]}} {} \
      [concat [list "$procedure $doubled R1" "$procedure $doubled C1"] $redraw] {{"Data":{},%"0","ErrInfo":""}}
}
companion ExitBomViewMode $path {} [concat [list "LockBomView $doubled 0"] $redraw] {{"Data":{},%"0","ErrInfo":""}}
companion EnterBomViewMode {{"ProjectPath":"C:\\\\设计\\\\a.dsn","Stick":["R1",3,"C 1"]}} {} \
    [concat [list "setAllNotStick $doubled" "setEnterViewMode $doubled R1,C 1," "LockBomView $doubled 1"] $redraw] {{"Data":{},%"0"}}
companion ExitBomViewMode {{"ProjectPath":"\\\\server\\设计\\a.dsn"}} {} \
    [concat [list {LockBomView "\\\\server\\设计\\a.dsn" 0} {saveFile "\\\\server\\设计\\a.dsn"}] [lrange $redraw 1 end]] {{"Data":{},%"0","ErrInfo":""}}
# Doubled already, and not: what begins a network path does not count.
foreach {given expected} {{C:\\a.dsn} {C:\\a.dsn} {\\\s\a.dsn} {\\\\\\s\\a.dsn}} {
  companion ExitBomViewMode [format {{"ProjectPath":"%s"}} [string map {\\ \\\\} $given]] {} \
      [concat [list "LockBomView \"$expected\" 0" "saveFile \"$expected\""] [lrange $redraw 1 end]] {{"Data":{},%"0","ErrInfo":""}}
}
companion EnterBomViewMode {{"ProjectPath":"a","Stick":[]}} {} \
    {{setAllNotStick "a"} {setEnterViewMode "a" } {LockBomView "a" 1} {saveFile "a"} ZoomIn ZoomOut} {{"Data":{},%"0"}}

# Design files and whole designs
companion AutoDealwithDsn {{"a":"1","ProjectPath":"C:\\a.dsn","n":5,"id":"x]y","b":"2"}} {} \
    [list {AutoDeal "C:\a.dsn" [list 1 x\]y 2]}] {{"Data":{"id":"x]y"},%"0"}}
companion SelectModule {{"Page":"P 1","priceK":"2"}} {} {{getSelectPart "P 1"}} {{"Data":{},%"0"}}
foreach data {null {"dsnDatPath"} {["dsnDatPath"]}} {
  companion PlaceDSNModule $data {} {} [refused PlaceDSNModule]
}
foreach {command data scripts} {
  PlaceDsnLibPartModule {{"PartIndex":2,"ViewBoxWidth":30,"ViewBoxHeight":20,"PartName":"R"}} {{MenuCommand 57603} IsSchematicViewActive}
  PlaceDSNModule {{"dsnDatPath":"C:\\m.json"}} IsSchematicViewActive
} {
  companion $command $data {IsSchematicViewActive 0} $scripts {{"Data":{},%"1","ErrInfo":"请先打开要放置的原理图page页!"}}
}
companion ClearCurrentDesign {[]} {} ClearCurrentDesign {{"Data":{},%"0"}}
companion CheckOpenState {{"ProjectPath":"c:/设计/A.DSN"}} {InitPath {C:\x.dsn;C:\设计\a.dsn;}} InitPath {{"Data":{"State":"Open"},%"0"}}
# 学院 in the code page would pass for UTF-8 by chance.
companion CheckOpenState {{"ProjectPath":"C:\\学院\\a.dsn"}} {InitPath {C:\设计\b.dsn;C:\学院\a.dsn}} InitPath {{"Data":{"State":"Open"},%"0"}}
companion CheckOpenState {{"ProjectPath":"C:\\设"}} {InitPath {C:\设}} InitPath {{"Data":{"State":"Open"},%"0"}}
companion CheckOpenState {{"ProjectPath":"C:\\b.dsn"}} {InitPath {C:\a.dsn}} InitPath {{"Data":{"State":"Close"},%"0"}}
companion Cancel {{"ProjectPath":"C:\\a.dsn"}} {} {} {{"Data":{"ExitCommand":"\"C:\\a.dsn\""},%"0"}}
check "Cancel answers in UTF-8" [encoding convertfrom utf-8 [binary decode hex [packetParser [hex [format {{"Command":"Cancel","Data":%s}} $path]]]]] \
    {{"Data":{"ExitCommand":"\"C:\\设计\\a.dsn\""},"Command":"Cancel_EndResult","Result":"0"}}
companion GetPartPropertyList $path {getAllPropertyName {Value {Part Number}}} [list "getAllPropertyName $raw"] \
    {{"Data":{"PartNameProperty":"Part Name","PartNumberProperty":"Part Number","PropertyList":["Value","Part Number"]},%"0","ErrInfo":""}}
companion GetPartPropertyList $path {} [list "getAllPropertyName $raw"] {{"Data":{},%"1","ErrInfo":""}}
companion SetNewGuid $path {getGuid ABC} [list {getGuid"C:\设计\a.dsn" 1} "getGuid $raw 1"] {{"Data":{"Guid":"ABC"},%"0","ErrInfo":""}}
companion SetNewGuid {{"ProjectPath":"a\tb"}} {getGuid ABC} [list "getGuid \"a\tb\" 1"] {{"Data":{"Guid":"ABC"},%"0","ErrInfo":""}}
companion SetNewGuid $path {getGuid {Invalid path}} [list {getGuid"C:\设计\a.dsn" 1} "getGuid $raw 1"] {{"Data":{},%"1","ErrInfo":"Invalid path"}}
companion CloseOrcad {{}} {} Exit ""

# Answers to the plug-in's own messages, and what nobody knows
companion X_EndResult_more {{}} {} {} ""
thread X_EndResult {{}} {} {} [refused X_EndResult "command1 error"]

# The link thread's requests
thread creatClient {{}} {creatClient 没有} {{creatClient 1}} {{"Data":{},%"1","ErrInfo":"creat client failed!"}}
thread creatClient {{}} {creatClient 0} {{creatClient 1}} {{"Data":{},%"0"}}
thread creatClient {{}} {creatClient 0} {{creatClient 0}} {{"Data":{},%"0"}}
thread getDsnPinCount $path {getDsnPinCount 12} [list "getDsnPinCount $doubled"] {{"Data":{"PinCount":"12"},%"0"}}
thread getDsnPinCount {{"ProjectPath":"\\\\\\\\server\\\\a.dsn"}} {} {{getDsnPinCount "\\\\server\\a.dsn"}} {{"Data":{"PinCount":""},%"0"}}
thread GetNewOpenPath {{}} {InitPath {C:\a.txt;}} InitPath {{"Data":{},%"1","ErrInfo":"No file!"}}
thread GetNewOpenPath {{}} {InitPath {C:\a.dsn;C:\b.DSN;C:\c.Dsn}} InitPath {{"Data":{"ProjectPath":"C:\\a.dsn","CloseFile":""},%"0"}}
thread FileStatus {{"Status":"Open","FileName":"C:\\a.dsn","More":1}} {InitPath {C:\a.dsn;C:\b.DSN;}} \
    [list "sendPacketGlobalHandle \"[hex {{"Command":"FileStatus","Result":"0","Data":{"Status":"Open","FileName":"C:\\a.dsn","More":1}}}]\"" InitPath] \
    {{"Data":{"ProjectPath":"C:\\a.dsn"},%"0"}}
thread GetNewOpenPath {{}} {InitPath {C:\b.DSN;}} InitPath {{"Data":{"ProjectPath":"C:\\b.DSN","CloseFile":"C:\\a.dsn"},%"0"}}
thread FileStatus {{"Status":"Close","FileName":"C:\\a.dsn"}} {} \
    [list "sendPacketGlobalHandle \"[hex {{"Command":"FileStatus","Result":"0","Data":{"Status":"Close","FileName":"C:\\a.dsn"}}}]\"" InitPath] \
    {{"Data":{},%"1","ErrInfo":"No file!"}}
thread GetNewOpenPath {{}} {InitPath {C:\b.DSN;}} InitPath {{"Data":{"ProjectPath":"C:\\b.DSN","CloseFile":""},%"0"}}
thread GetNetsList $path {GetNetsList done} [list "GetNetsList $doubled \"BASE\\\\Cache\\\\Nets.txt\""] {{"Data":{},%"1","ErrInfo":"File not exist"}}
thread GetNetsList $path {GetNetsList {Error: no nets}} [list "GetNetsList $doubled \"BASE\\\\Cache\\\\Nets.txt\""] {{"Data":{},%"1","ErrInfo":"Error: no nets"}}
row packetParser {{"Command":"FileStatus_EndResult","Data":{"Path":"C:\\学院"}}} {} {} ""
thread GetNetsList $path {GetNetsList done} [list "GetNetsList $doubled \"C:\\\\学院\\\\Cache\\\\Nets.txt\""] {{"Data":{},%"1","ErrInfo":"File not exist"}}
row packetParser "{\"Command\":\"FileStatus_EndResult\",\"Data\":{\"Path\":\"[string map {\\ \\\\} $base]\"}}" {} {} ""
