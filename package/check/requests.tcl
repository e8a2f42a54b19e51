# Every request of a companion: its command, its data, the reply without its "Command" and "Result" but for a mark (%0, %1)
# where those stand, "" when there is none, and the procedures of the host that are called for it, with their arguments.
# Names are Chinese where the code page has them.

set requests {}
set named design
foreach text {\u8bbe\u8ba1 \u8a2d\u8a08} {
  if {[encoding convertfrom [encoding system] [encoding convertto [encoding system] $text]] eq $text} {
    set named $text
    break
  }
}
# The folder of the open design, below ::base, is what the companion tells the plug-in as the project's.
set project [string map {/ \\\\} $base/project]
set design $base/project/$named.dsn
set path "{\"ProjectPath\":\"$design\"}"
# Where the companion says that it keeps a module.
set kept [string map {/ \\\\} $base/frames.tcl]
set redraw [list [list saveFile $design] ZoomIn ZoomOut]
set line {{"PartNumber":"1","Value":"10k","PartRef":"R1","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"}}

proc request {command data reply calls} {
  set mark "\"Command\":\"${command}_EndResult\",\"Result\":"
  lappend ::requests [list $command $data [string map [list %0 $mark\"0\" %1 $mark\"1\"] $reply] [lmap call $calls {list {*}$call}]]
}

# Views and pages
request GetActiveProPages {{}} {{"Data":{"ErrInfo":"","Open":[{"ProjectPath":"C:/a.dsn","Pages":["P1","Page 2"]}]},%0}} \
    GetActiveProPages
request SetPlacePortType {{"Type":3}} {{"Data":{"ErrInfo":""},%0}} {{KX_PlaceWirePort 3 {}}}
request SetPlaceOffpageType {{"Type":"-2"}} {{"Data":{"ErrInfo":""},%0}} {{KX_PlaceWireOffPage -2 {}}}
request CreateSVG $path "{\"Data\":{\"SVGPath\":\"$project\\\\Cache\\\\Output\",\"PreviewPic\":\"$project\\\\Cache\\\\Output\\\\Preview.bmp\"},%0,\"ErrInfo\":\"\"}" \
    [list [list convertToSVG $design]]

# References and jumps
request AdjustRefAndValue {{}} {{"Data":{},%0}} ReplaceRefAndValue
request RenameRef {{"Type":1}} {{"Data":{},%0}} {{RenameRef 1}}
request JumpToDsn "{\"ProjectPath\":\"$design\",\"PageName\":\"P1\",\"PagePos\":\"10 20\",\"Sch\":\"S\"}" {{"Data":{},%0}} \
    [list [list JumpToDsn $design S P1 {10 20}]]
request JumpToPartRef {{"ProjectPath":"C:/a.dsn","PartRef":"R[1];$x"}} {{"Data":{},%0}} {{gotoLocation C:/a.dsn R\[1\]\;\$x}}

# Reports: their results come as messages of their own
foreach {command procedure} {GetDsnAllPackageInfo GetAllPackage GetOlbAllPackageInfo GetOlbAllPackage DsnCheck RunCheck
                             DsnCheckActiveProj RunCheckActiveProj} {
  request $command {{"ProjectPath":"C:/a.dsn"}} "" [list [list $procedure C:/a.dsn]]
}
request GetOlbObjectPackageInfo {{"ProjectPath":"C:/a.olb","ObjName":"R"}} "" {{GetOlbObjectPackage C:/a.olb R}}

# Bills of materials
request GenerateBOM $path "{\"Data\":{\"Stick\":\[$line\],\"NotStick\":\[\],\"NotPartNumber\":\[\]},%0}" \
    [list GetProductVersion [list generateBOMForPath $design "Part Number" "Part Name"] GetProductVersion \
         ::capGenerateBOMUtil::getStickList ::capGenerateBOMUtil::getNotStickList ::capGenerateBOMUtil::getNoPartNumberList]
request SwitchStickOrNotStick {{}} {{"Data":{"ErrInfo":""},%0}} {{switchStickOrNotStick 0}}
foreach {command procedure} {SetToNotStick setRefToNotUse SetToStick setRefToUse} {
  request $command "{\"ProjectPath\":\"$design\",\"item\":\[{\"PartRef\":\"R1\"}\]}" {{"Data":{},%0,"ErrInfo":""}} \
      [list [list $procedure $design R1] {*}$redraw]
}
request EnterBomViewMode "{\"ProjectPath\":\"$design\",\"Stick\":\[\"R1\"\]}" {{"Data":{},%0}} \
    [list [list setAllNotStick $design] [list setEnterViewMode $design R1,] [list LockBomView $design 1] {*}$redraw]
request ExitBomViewMode $path {{"Data":{},%0,"ErrInfo":""}} [list [list LockBomView $design 0] {*}$redraw]

# Designs
request AutoDealwithDsn {{"ProjectPath":"C:/a.dsn","a":"1","id":"x]y"}} {{"Data":{"id":"x]y"},%0}} {{AutoDeal C:/a.dsn {1 x\]y}}}
request SelectModule {{"Page":"P1"}} {{"Data":{},%0}} {{getSelectPart P1}}
request ClearCurrentDesign {{}} {{"Data":{},%0}} ClearCurrentDesign
request CheckOpenState $path {{"Data":{"State":"Open"},%0}} InitPath
request Cancel {{"ProjectPath":"C:/a.dsn"}} {{"Data":{"ExitCommand":"\"C:/a.dsn\""},%0}} {}
request GetPartPropertyList $path \
    {{"Data":{"PartNameProperty":"Part Name","PartNumberProperty":"Part Number","PropertyList":["Value","Part Number"]},%0,"ErrInfo":""}} \
    [list [list getAllPropertyName $design]]
request SetNewGuid $path {{"Data":{"Guid":"ABC"},%0,"ErrInfo":""}} [list [list getGuid $design 1]]
request CloseOrcad {{}} "" Exit
