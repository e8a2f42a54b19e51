# Example calls of the plug-in's commands, carried out in the stand-in host once a design is open. Each becomes lines of
# ::calls::file, which begin with a word that says what they are: the call, each packet that was sent meanwhile, and what
# the call answered. Line ends and backslashes in them are escaped.
#
# A command that waits for the user, or reaches outside the program, is named with the reason why it is not called.

namespace eval ::calls {
    variable channel [open $file w]
    variable results {}
    fconfigure $channel -encoding utf-8 -translation lf
}

proc ::calls::note {kind text} {
    if {$::calls::channel eq ""} {
        return
    }
    puts $::calls::channel [string trimright "$kind [string map [list \\ {\\} \n {\n} \r {\r}] $text]"]
}

# The companion is asked only while there is a connection, and where the cache lies it has told by then.
waitLink

# Nothing leaves the host; whoever traces the procedure goes on doing so.
set traces [trace info execution ::sendPacketGlobalHandle]
rename ::sendPacketGlobalHandle ::calls::send
proc ::sendPacketGlobalHandle {text} {
    ::calls::note sent $text
    return 0
}
foreach trace $traces {
    trace add execution ::sendPacketGlobalHandle {*}$trace
}

proc call {words} {
    ::calls::note call $words
    catch {uplevel #0 $words} result
    ::calls::note result $result
}

proc uncalled {command reason} {
    ::calls::note uncalled "$command $reason"
}

set path [dict get $::pages::active path]

call [list packetParser [binary encode hex {{"Command":"CheckOpenState","Data":{"ProjectPath":"C:\\designs\\old.dsn"}}}]]
call {packetParser 7b22436f6d6d616e64223a22436865636b4f70656e5374617465227d}
call {packetParserForPthread 7b22436f6d6d616e64223a224765744e65774f70656e50617468227d}
call [list ReadOpenPath $path]
call [list sendSaveFile $path]
call [list sendCloseFile {C:\designs\old.dsn}]
call {getOpenFileCount}
call {tryUpdateBom}
call {sendAddToBom {{x;10k;R1;RES;0603;2}}}
call {sendRemoveFromBom {{A-100;4.7uF;C3;CAP;0805;2}}}
call {selectAddOrRemoveFromBom}
call {getGenerateGuid}

call {initSVGList}
call {addToPageList {Schematic top}}
call {addToPageList {Page {main/1} 800 1100 1}}
call {addToLibList {Name RES}}
call {addToLibList {Box -10 -20 20 40 48 0 0 1 0}}
call {addToLibList {Pin 0 20 0 30 24 0 SHORT BOTTOM}}
call {addToPageList {Part 300 200 0 0 RES R1}}
call {addToPageList {Line 300 230 400 230 18 0 0}}
call {addToPageList {Text 310 190 R1 40 {} -12 0}}
call {outputSVGFile {top {main/1} {} {} 1}}

call {initGraphicFile}
call {addGraphicLibList {Name RES}}
call {addGraphicLibList {Line 0 0 10 0 24 0 0}}
call {outputGraphicFile parts/resistors}

call {initMarketFile}
call {addMarketLibList {Name RES}}
call {addMarketPartList {Junction 120 200}}
call {outputMarketFile module 1100 800 0}
call {getOlbPath}
call {getNewOlbPath}
call {removeDatFile}
call {sendUploadMarket 12 4 1 {1,R1,RES} {CLK;RESET} {}}

call {sendRefRepetition RefRepe R1 R1 top main 300 200}
call {sendRefRepetition}
call {sendIllegalChar Value 10k! top main 300 200}
call {sendPinNC U3 7 top main 300 200}
call {sendNetlist NoFootprint U3 {} top main 300 200}
call {checkCharIllegal R1}
call {checkCharIllegal 电阻}
call {sendDsnPackageInfo {{Value 10k} {Source {C:\lib\a.olb}}}}
call {sendOlbPackageInfo {{Value 10k} {Source {C:\lib\a.olb}}}}
call {sendOlbObjectPackageInfo {{Value 10k}}}
call {getSelfUserId}
call {GetResPath 1}
call {GetMousePosition}
call {serverLinkBreak}

uncalled SelectJumpPart "waits for the user's choice"
uncalled outputWarming "shows a message box"
uncalled outputError "shows a message box"
uncalled GetClipBoardPic "reads what the user has copied"
uncalled writeToClipboard "replaces what the user has copied"
uncalled pressEnter "presses a key"
uncalled afterPlace "presses keys"
uncalled placeMarketPart "changes the page; the recorded conversations show it"
uncalled PlacePartProperty "needs a part that was just placed"
uncalled execTool "starts a program"

close $::calls::channel
set ::calls::channel ""

# Requests, for the sake of the host's procedures that they call; procedures.tcl notes those.
proc ask {command {data ""} {endpoint packetParser}} {
    $endpoint [binary encode hex "{\"Command\":\"$command\",\"Data\":{$data}}"]
}

set library [file dirname [string map {\\ /} $path]]/parts.olb
writeLibrary $library
set design "\"ProjectPath\":\"[string map {\\ \\\\} $path]\""
set ofLibrary "\"ProjectPath\":\"$library\""
set parts {"item":[{"PartRef":"R6"}]}
ask FileStatus_EndResult "\"Path\":\"[string map {\\ \\\\} [file nativename [file dirname $path]]]\""
ask GetActiveProPages
ask JumpToDsn "$design,\"PageName\":\"power\",\"PagePos\":\"300 200\",\"Sch\":\"SCHEMATIC1\""
ask JumpToPartRef "$design,\"PartRef\":\"R6\""
ask GenerateBOM $design
ask SetToNotStick $design,$parts
ask SetToStick $design,$parts
ask EnterBomViewMode "$design,\"Stick\":\[\"R6\",\"C6\"\]"
ask ExitBomViewMode $design
select R6
ask SwitchStickOrNotStick
ask GetPartPropertyList $design
ask SetNewGuid $design
ask AutoDealwithDsn "$design,\"id\":\"1001\",\"choice\":\"keep\""
ask DsnCheck $design
ask DsnCheckActiveProj $design
ask GetDsnAllPackageInfo $design
ask GetOlbAllPackageInfo $ofLibrary
ask GetOlbObjectPackageInfo "$ofLibrary,\"ObjName\":\"R\""
ask SetPlacePortType {"Type":0}
ask SetPlaceOffpageType {"Type":0}
ask AdjustRefAndValue
ask CreateSVG $design
ask GetNetsList $design packetParserForPthread
ask getDsnPinCount $design packetParserForPthread
ask GetNewOpenPath {} packetParserForPthread
select R6
ask SelectModule {"Page":"power"}
set module "\"dsnDatPath\":\"[string map {\\ /} [outputMarketFile x 0 0 0]]\""
ask PlaceDsnLibPartModule "$module,\"PartIndex\":0,\"ViewBoxWidth\":100,\"ViewBoxHeight\":100,\"PartName\":\"R\",\"value\":\"10k\""
PlacePartProperty
ask PlaceDSNModule $module
placeMarketPart
ask RenameRef {"Type":0}
ask ClearCurrentDesign
ask CloseOrcad
