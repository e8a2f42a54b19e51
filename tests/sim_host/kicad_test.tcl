# Reading schematics: tclsh8.6 kicad_test.tcl
package require tcltest
namespace import ::tcltest::test ::tcltest::makeFile ::tcltest::makeDirectory
source -encoding utf-8 [file join [file dirname [file normalize [info script]]] \
    .. .. sim host kicad.tcl]

test parse "texts and nesting survive whatever characters they hold, and no text is taken for a list" -body {
    set wrong {}
    foreach {text expected} [list \
        "(a 1 (b 2) (c))" {a 1 {b 2} c} \
        "(a \"x (y) z\" b)" {a {x (y) z} b} \
        "(a \"\x7d\x7b\" \"\x7b\")" [list a "\x7d\x7b" "\x7b"] \
        "(a \"\\\x7b\\\x7d\")" [list a "\x7b\x7d"] \
        "(a \"q\\\"q\" \"back\\\\slash\")" [list a q\"q back\\slash] \
        "(a \"one\\ntwo\" \"\")" [list a one\ntwo ""] \
        "(a \"\[exit\] \$x\" \"#\" ;)" [list a "\[exit\] \$x" "#" ";"] \
        "(a \"b\"(c)\"d\")" {a b c d} \
        "(a ba\\re\n\x7bx)" [list a ba\\re "\x7bx"] \
        "(a \"end\\\\\" \"\\\\\x7b\" \")\")" [list a end\\ "\\\x7b" ")"] \
    ] {
        set found [list {*}[string map {\1 "" " \x7d" \x7d} [kicad::parse $text]]]
        if {$found ne [list {*}$expected]} {
            lappend wrong $text $found
        }
    }
    set text [kicad::parse "(text \"at 5 V\" (at 1 2) (b \"\x7d\x7b\" \"hide\"))"]
    list {*}$wrong [kicad::value $text at] [kicad::kind [lindex $text 1]] [kicad::kind [lindex $text 2]] \
        [kicad::value $text b] [kicad::says $text hide]
} -result [list 1 "" at "\x7d\x7b" 0]

test fitted "a mark or a field leaves a part out" -body {
    lmap {node properties} {
        (s) {} "(s (dnp no))" {} "(s (dnp yes))" {} (s) {DNP DNP} (s) {DNP 1} (s) {DNP ""} (s) {DNP No} (s) {DNP 0}
        "(s (dnp yes))" {DNP 0} "(s (dnp no))" {DNP DNP}
    } {kicad::isFitted [kicad::parse $node] $properties}
} -result {1 1 0 0 0 1 1 1 0 1}

test instances "our own name here comes first, then another's, our first one below a root that is gone, the first at all" -body {
    set entry {(path "%s" (reference "%s") (unit %s))}
    set away "(project \"z\" [format $entry /z/s U9 2] [format $entry /z/t U8 1])"
    lmap projects [list \
        "$away (project \"other\" [format $entry /r/a U2 2]) (project \"own\" [format $entry /r/a U3 3])" \
        "$away (project \"other\" [format $entry /r/a U2 2]) (project \"own\" [format $entry /old/a U3 3])" \
        "$away (project \"own\" [format $entry /older/a U4 4] [format $entry /old/a U3 3])" $away ""] {
        dict values [kicad::overridesFor [kicad::parse "(symbol (uuid \"u\") (instances $projects))"] /a \
            {project own rootPath /r}]
    }
} -result {{U3 3} {U2 2} {U4 4} {U9 2} {}}

test busMembers "ranges and groups are buses, marks of formatting are not" -body {
    lmap name {{D[0..2]} {A-[3..1]} {D[08..9]} D0 {D[0]} {D[0..99999]} ~{RST} {A${B}} ~{D[0..1]} {U{D+ ~{R}}} {{I2C X[1..0]}}} {
        kicad::busMembers $name {I2C {SDA SCL}}
    }
} -result {{0 D0 1 D1 2 D2} {0 A-1 1 A-2 2 A-3} {0 D8 1 D9} {} {} {} {} {} {0 ~{D0} 1 ~{D1}}\
    {D+ U.D+ ~{R} U.~{R}} {SDA SDA SCL SCL X0 X0 X1 X1}}

proc wire {x1 y1 x2 y2} {
    return "(wire (pts (xy $x1 $y1) (xy $x2 $y2)))"
}
proc joined {design} {
    set nets {}
    dict for {net members} [dict get $design nets] {
        lappend nets $net [lsort [lmap member $members {
            set part [dict get $design parts [lindex $member 0]]
            string cat [dict get $part reference] . [lindex $member 1]
        }]]
    }
    return [lsort -stride 2 $nets]
}

test unreadable "a file that is no schematic, or not a whole one, is an error that names it and says why" -body {
    lmap text {"" "(kicad_pcb (version 1))" "EESchema Version 4" "(kicad_sch (unbalanced" "(kicad_sch (text \"cut"
            "(kicad_sch) (text \"behind\"))" "(kicad_sch (wire (pts (xy a 1) (xy 2 1))))"} {
        catch {kicad::load [makeFile $text broken.kicad_sch]} problem
        regexp {/broken.kicad_sch cannot be read: (.*)} $problem -> why
        set why
    }
} -result [list {*}[lrepeat 3 "it is not a schematic of KiCad 6 or later"] \
    {*}[lrepeat 3 "its parentheses do not match: it is cut off or damaged"] {"a" is not a number that can be used}]

# KiCad 9's way: every symbol says what it is called on each page of each project.
proc placed {uuid library x y names {more ""}} {
    set projects ""
    foreach {project path reference} $names {
        append projects "(project \"$project\" (path \"$path\" (reference \"$reference\") (unit 1)))"
    }
    set effects "(effects (font (size 1.27 1.27)) (hide yes))"
    return "(symbol (lib_id \"d:$library\") (at $x $y 0) (unit 1) (fields_autoplaced yes) (uuid \"$uuid\") $more
      (property \"Reference\" \"[lindex $names 2]\" (at 0 0 0) $effects) (instances $projects))"
}
proc label {text x y} {
    return "(label \"$text\" (at $x $y 0))"
}
proc sheet {uuid name file y {more ""}} {
    return "(sheet (at 101.6 $y) (size 25.4 12.7) (exclude_from_sim no) (in_bom yes) (on_board yes) (uuid \"$uuid\")
      $more (property \"Notes\" \"theirs\" (at 0 0 0)) (property \"Sheetname\" \"$name\" (at 0 0 0))
      (property \"Sheetfile\" \"$file\" (at 0 0 0)) (instances (project \"one\" (path \"/one\" (page \"2\")))))"
}
proc schematic {uuid body} {
    return "(kicad_sch (version 20250114) (generator \"eeschema\") (generator_version \"9.0\") (uuid \"$uuid\")
      (paper \"A4\") (embedded_fonts no) (lib_symbols
      (symbol \"d:R\" (pin_names (offset 0) (hide yes)) (property \"Value\" \"R\" (at 0 0 0)) (symbol \"R_1_1\"
        (pin passive line (at -2.54 0 0) (length 1.27) (name \"~\") (number \"1\"))
        (pin passive line (at 2.54 0 180) (length 1.27) (name \"~\") (number \"2\"))))
      (symbol \"d:MCU\" (symbol \"MCU_1_1\"
        (pin bidirectional line (at -2.54 0 0) (length 2.54) (name \"PA0\") (number \"1\")
          (alternate \"U{slash}TX\" output line) (alternate \"~{NSS}\" input inverted))
        (pin power_in line (at 2.54 0 0) (length 2.54) (hide yes) (name \"VDD\") (number \"2\"))))
      (symbol \"d:MCU2\" (extends \"MCU\") (property \"Value\" \"MCU2\" (at 0 0 0)))
      (symbol \"d:VDD\" (power) (symbol \"VDD_1_1\"
        (pin power_in line (at 0.9 0 270) (length 0) (name \"~\") (number \"1\")))))
      $body)"
}

test globals "a global name, of a bus and a supply too, is also that of the labels on its page, and of no other page" -setup {
    set folder [makeDirectory kicad_globals]
    set bus "(bus (pts (xy 25.4 101.6) (xy 50.8 101.6))) (global_label \"D\[0..1\]\" (shape input) (at 25.4 101.6 0))
        (bus_entry (at 33.02 101.6) (size 2.54 2.54)) [label D0 35.56 104.14]"
    makeFile [schematic g "[sheet s S{slash}T below.kicad_sch 127 {(pin "VDD" input (at 101.6 127 180))}] $bus
        [placed v1 VDD 24.5 25.4 {g /g #PWR1} {(property "Value" "VDD" (at 0 0 0))}]
        [placed r0 R 99.06 127 {g /g R0}] [placed r1 R 27.94 25.4 {g /g R1}] [placed r2 R 27.94 50.8 {g /g R2}]
        [label VDD 25.4 50.8] [placed r3 R 38.1 104.14 {g /g R3}]"] g.kicad_sch $folder
    makeFile [schematic below "$bus [placed m1 MCU 25.4 25.4 {g /g/s U1}] [placed r4 R 38.1 104.14 {g /g/s R4}]
        [placed r5 R 27.94 50.8 {g /g/s R5}] (hierarchical_label \"VDD\" (shape input) (at 25.4 50.8 0))
        [placed r6 R 27.94 76.2 {g /g/s R6}] [label D1 25.4 76.2] [placed r7 R 27.94 152.4 {g /g/s R7}]
        (global_label \"D1\" (shape input) (at 25.4 152.4 0)) [label "\$\{SHEETNAME\}" 22.86 25.4]
        [placed r8 R 27.94 177.8 {g /g/s R8}] [label VCC 25.4 177.8]"] below.kicad_sch $folder
    makeFile [schematic h "[sheet s S below.kicad_sch 127] [placed r1 R 27.94 25.4 {h /h R1}] [label VDD 25.4 25.4]"] \
        h.kicad_sch $folder
} -body {
    list [joined [kicad::load $folder/g.kicad_sch]] [dict get [joined [kicad::load $folder/h.kicad_sch]] VDD_1]
} -result {{D0 {R3.1 R4.1} D1 {R6.1 R7.1} S/T/S/T U1.1 S/T/VCC R8.1 VDD {R0.2 R1.1 R2.1 R5.1 U1.2}} R1.1}

test projects "two projects share a sheet above their folders; pages, names and what is taken out are each one's own" -setup {
    set folder [makeDirectory kicad_projects]
    foreach name {one two two/部分} {
        file mkdir $folder/$name
    }
    # Metric places, whose sums are other whole mils than they; bus names that go on by place in a range and by name in a group; a group may have a name of its own.
    makeFile [schematic shared "
      [placed r1 R 25.4 25.4 {one /one/a R1 one /one/b R2 two /two/a/b R11 two /other/a R99}]
      [placed m1 MCU2 50.8 25.4 {one /one/a U1 one /one/b U2 two /two/a/b U11} "
        (property \"Value\" \"\${型号}-\${PROJECT}\" (at 0 0 0)) (property \"型号\" \"国产\" (at 0 0 0))
        (dnp yes) (in_bom no) (exclude_from_sim yes) (pin \"1\" (uuid \"p1\") (alternate \"U{slash}TX\"))"]
      [wire 27.94 25.4 48.26 25.4] [label D3 30.48 25.4]
      (hierarchical_label \"D\[2..3\]\" (shape input) (at 25.4 50.8 0)) (bus (pts (xy 25.4 50.8) (xy 50.8 50.8)))
      [label SDA 22.86 25.4] (hierarchical_label \"{I2C}\" (shape input) (at 25.4 60.96 0)) (bus_alias \"I2C\" (members \"SDA\" \"SCL\"))
      (text_box \"说明 \${NOTES} \${#}\" (at 10 10 0) (size 10 5) (effects (font (size 1.27 1.27)) (justify left top)))
      (circle (center 10 10) (radius 2)) (image (at 1 1)) (novelty \"what comes after\") (image (at 2 2))"] shared.kicad_sch $folder
    set pins {(pin "D[2..3]" input (at 101.6 %1$s 180)) (pin "{I2C}" input (at 101.6 %2$s 180))}
    makeFile [schematic one "
      [sheet a 左 ../shared.kicad_sch 25.4 [format $pins 27.94 30.48]] [sheet b 右 ..\\\\shared.kicad_sch 50.8]
      (bus (pts (xy 76.2 27.94) (xy 101.6 27.94))) [label X\[0..7\] 76.2 27.94]
      (bus (pts (xy 76.2 30.48) (xy 101.6 30.48))) [label Y{SDA} 76.2 30.48]
      [placed r2 R 25.4 76.2 {elsewhere /one R8 one /one R3}] [label X1 22.86 76.2] [label Y.SDA 27.94 76.2]
      [placed r3 R 24.66 80.01 {one /one R4}] [placed r4 R 29.74 80.01 {one /one R5}]
      [placed v1 VDD 26.3 80.01 {one /one #PWR1} {(property "Value" "VDD" (at 0 0 0))}]
      [sheet c 缺 none.kicad_sch 101.6] [sheet d 自 one.kicad_sch 127]"] one/one.kicad_sch $folder
    makeFile {{"text_variables": {"PROJECT": "二"}}} two/two.kicad_pro $folder
    makeFile [schematic two "[string map {"in_bom yes" "in_bom no" "board yes" "board no" "sim no" "sim yes"} \
        [sheet a 板 部分/sub.kicad_sch 25.4 {(dnp yes)}]]"] two/two.kicad_sch $folder
    makeFile [schematic sub "[sheet b 板 ../../shared.kicad_sch 25.4] [placed r5 R 25.4 25.4 {two /two/a R12}]"] two/部分/sub.kicad_sch $folder
    proc parts {design} {
        lmap part [dict values [dict get $design parts]] {
            if {[dict get $part power]} continue
            concat [lmap key {reference value inBom fitted simulated onBoard} {dict get $part $key}] \
                [lmap pin [dict get $part pins] {dict get $pin name}]
        }
    }
} -body {
    set one [kicad::load $folder/one/one.kicad_sch]
    set two [kicad::load $folder/two/two.kicad_sch]
    list [dict keys [dict get $one pages]] [parts $one] [joined $one] [dict get $one notes] \
        [dict keys [dict get $two pages]] [parts $two] [joined $two] \
        [lmap part [parts [kicad::load $folder/shared.kicad_sch]] {lindex $part 0}] \
        [dict get $one pages 左 texts] [lmap line [dict get $one pages 左 lines] {lrange $line 0 5}]
} -result {{one 左 右} {{R3 {} 1 1 1 1 {} {}} {R4 {} 1 1 1 1 {} {}} {R5 {} 1 1 1 1 {} {}}\
    {R1 {} 1 1 1 1 {} {}} {U1 {国产-${PROJECT}} 0 0 0 1 U/TX VDD} {R2 {} 1 1 1 1 {} {}}\
    {U2 {国产-${PROJECT}} 0 0 0 1 U/TX VDD}}\
    {VDD {R4.2 R5.1 U1.2 U2.2} X1 {R1.2 R3.1 U1.1} Y.SDA {R1.1 R3.2} 右/D3 {R2.2 U2.1} 右/SDA R2.1}\
    {{shared.kicad_sch holds what is not shown: ${PROJECT}, 2 image, 1 novelty} {sheet 缺 of one.kicad_sch is left out: there is no "none.kicad_sch"}\
        {sheet 自 of one.kicad_sch is left out: it is on itself}}\
    {two 板 板/板} {{R12 {} 0 0 0 0 {} {}} {R11 {} 0 0 0 0 {} {}} {U11 国产-二 0 0 0 0 U/TX VDD}}\
    {VDD U11.2 板/板/D3 {R11.2 U11.1} 板/板/SDA R11.1} {R1 U1}\
    {{text {说明 theirs 2} x 444 y 444 rotation 0 size 50 justify {left top}}} {{394 394 788 394 788 591} {473 394 470 414 462 434}}}

test odd "what cannot be read is left out and named, the rest is there, and sheets that double at every level end" -setup {
    set folder [makeDirectory kicad_odd]
    file mkdir $folder/sub
    set again [string repeat "[placed same R 1 1 {p /x R1}] " 2]
    makeFile [schematic leaf $again] sub/leaf.kicad_sch $folder
    makeFile [schematic middle [sheet m leaf "\$\{KIPRJMOD\}/sub/leaf.kicad_sch" 1]] sub/middle.kicad_sch $folder
    makeFile "(kicad_sch (text" cut.kicad_sch $folder
    makeFile [string map {2025 2099 "MCU\")" "GONE\")"} \ufeff[schematic root "
      [placed r1 R 2.54e1 -1E-06 {p /root R1}] [placed r2 R here 1 {p /root R2}] [placed m1 MCU2 1 1 {p /root U1} {
        (property private "内部" "值" (at 0 0 0)) (property "private" "own" (at 0 0 0))}]
      [sheet s1 middle sub/middle.kicad_sch 1] [sheet s2 cut cut.kicad_sch 2] [sheet s3 none {} 3] [sheet s4 far none.sch there]"]] \
        root.kicad_sch $folder
    for {set level 0} {$level < 40} {incr level} {
        set next double[expr {$level + 1}].kicad_sch
        makeFile [schematic u "[sheet a a $next 1] [sheet b b $next 2]"] double$level.kicad_sch $folder
    }
} -body {
    set design [kicad::load $folder/root.kicad_sch]
    set doubled [kicad::load $folder/double0.kicad_sch]
    list [dict keys [dict get $design pages]] [dict keys [dict get $design parts]] \
        [dict filter [dict get $design parts /m1 properties] key 内部 private] \
        [string map [list $folder/ ""] [dict get $design notes]] \
        [dict size [dict get $doubled pages]] [lindex [dict get $doubled notes] end]
} -result {{root middle middle/leaf} {/r1 /m1 /s1/m/same {/s1/m/same (2)}} {内部 值 private own}\
    {{a KiCad later than 9 wrote this: what is new in it may be missing}\
        {a sheet of root.kicad_sch is left out: "there" is not a number that can be used}\
        {part R2 of root.kicad_sch is left out: "here" is not a number that can be used}\
        {root.kicad_sch has no symbol GONE, which d:MCU2 extends}\
        {sheet cut of root.kicad_sch is left out: cut.kicad_sch cannot be read:\
            its parentheses do not match: it is cut off or damaged}\
        {sheet none of root.kicad_sch is left out: there is no ""}}\
    1000 {sheet b of double9.kicad_sch is left out: there are 1000 pages already}}

test strange "what is odd keeps its parts and nets, and what is not understood is named once" -setup {
    set folder [makeDirectory kicad_strange]
    makeFile [string map [list GROW [string repeat "\$\{Y\}" 60]] {{"text_variables": {"X": "DATA", "Y": "GROW"}}}] p.kicad_pro $folder
    # Three files of one name with symbols that differ, by references of a root that is gone.
    foreach {name height} {a 25.4 b 50.8 c 76.2} {
        file mkdir $folder/$name
        makeFile [string map [list \"2\" \"2$name\"] [schematic s "
          [placed r R 25.4 25.4 "p /gone/$name R$name"] [placed r2 R 25.4 50.8 "p /gone/$name Q$name"]
          [label L 27.94 25.4] [label L 27.94 50.8]
          (hierarchical_label \"DATA\" (shape input) (at 22.86 25.4 45))"]] ./~s.kicad_sch $folder/$name
        append sheets [sheet $name "[string map {a "" b B c "\$\{X\}"} $name]" $name/~s.kicad_sch $height \
            "(pin \"\$\{X\}\" input (at 101.6 $height))"] [label P$name 101.6 $height]
    }
    makeFile [string map {(lib_symbols "(lib_symbols (symbol \"d:Z\" (symbol \"Z\"))" A4 A99} [schematic p "$sheets
      [placed r1 R 25.4 25.4 {p /p R1}] [placed r2 R 30.48 25.4 {p /p R2}] [label N00001 22.86 25.4]
      [placed v1 VDD 32.12 25.4 {p /p #PWR1}] [label L 33.02 25.4]
      [wire 25.4 50.8 27.94 50.8] (bus_entry (at 27.94 50.8) (size 2.54 2.54)) (wire (pts (xy 30.48 53.34) (xy 33.02 53.34)) (novelty))
      [placed r3 R 22.86 50.8 {p /p R3}] [placed r4 R 35.56 53.34 {p /p R4}] [label E 25.4 50.8]
      [string map {{ 0) (unit} { 45) (unit} {(unit 1)))} {(unit 7)))}} [placed r5 R 25.4 76.2 {p /p R5}]]
      [placed m1 MCU 25.4 101.6 {p /p U1} {(property "F" "1" (at 0 0 0)) (property "F" "${Y}" (at 0 0 0))
        (property "G" "${SHEETPATH}${#}" (at 0 0 0)) (pin "1" (alternate "NO"))}]
      (symbol_instances (path \"/x\" (reference \"R\"y)))"]] p.kicad_sch $folder
} -body {
    set design [kicad::load $folder/p.kicad_sch]
    list [dict keys [dict get $design pages]] [joined $design] [dict get $design notes] [lsort [dict keys [dict get $design symbols]]] \
        [dict values [dict get $design parts /m1 properties] {[1$/]*}]
} -result {{p ~s B DATA}\
    {B/L {Qb.2b Rb.2b} DATA/L {Qc.2c Rc.2c} E {R3.2 R4.1} L R2.2 N00001 R1.1 N00002 {R1.2 R2.1} Pa Ra.1 Pb Rb.1 Pc Rc.1\
        VDD U1.2 ~s/L {Qa.2a Ra.2a}}\
    {{p.kicad_sch holds what is not shown: ${#}, alternate NO of pin 1 of d:MCU, angle 45, 1 novelty, paper A99,\
            symbol body "Z", text of ${Y}..., which grows without end, unit 7 of R5}\
        {~s.kicad_sch holds what is not shown: angle 45, another root, whose references are taken}}\
    {d:MCU d:MCU2 d:MCU2@~s d:MCU2@~s-2 d:MCU2@~s-3 d:MCU@~s d:MCU@~s-2 d:MCU@~s-3 d:R d:R@~s d:R@~s-2 d:R@~s-3 d:VDD d:Z}\
    {1 {${Y}} {/${#}}}}

tcltest::cleanupTests
