"""Faults that are planted to try the trust run itself: what is changed in the sources, and which part has to notice.

They live here alone: no build of the plug-in has them, and a switch in the sources is not needed to leave them out.
"""

from __future__ import annotations

import dataclasses

from .natively import REENTRANCE


@dataclasses.dataclass(frozen=True)
class Planted:
    name: str
    file: str
    before: str  # stands there once
    after: str
    kind: str  # what it has to be found as: another failure of the part is no proof
    preset: str
    part: str  # of the trust run
    program: str
    words: tuple[str, ...] = ()
    everything: bool = False  # as the trust run tries it, not the sample of every test run


_CORPORA = "vernoxa_fuzz_replay", ("fuzz/corpus",)
_LOAD = "vernoxa_trust_tests", ("--gtest_filter=Load.PacketsThroughBothDoors",)

PLANTED = (
    Planted("a leak", "src/text/json.cpp",
            "  const std::unique_ptr<char, decltype(&cJSON_free)> owner(printed, &cJSON_free);\n", "",
            "leaks", "native", "native", *_LOAD),
    Planted("a race", "src/link/companion_link.cpp",
            "void CompanionLink::setClientCreated(bool created) {\n  const std::lock_guard lock(guard_);\n",
            "void CompanionLink::setClientCreated(bool created) {\n",
            "races", "tsan", "races", "vernoxa_pure_tests", ("--gtest_filter=LinkThreadRace*",)),
    Planted("a use after free", "src/plugin/command_guard.cpp",
            "  const std::shared_ptr<Session> session = plugIn.session;\n",
            "  Session* const session = plugIn.session.get();\n",
            "crashes", "native", "reentrance", "vernoxa_tcl_tests", (REENTRANCE,)),
    Planted("list elements kept without a reference", "src/tcl/arguments.cpp",
            "  for (Tcl_Obj* const element : elements_) {\n    Tcl_IncrRefCount(element);\n  }\n}\n\n"
            "TclList::~TclList() {\n  for (Tcl_Obj* const element : elements_) {\n    Tcl_DecrRefCount(element);\n  }\n}\n",
            "}\n\nTclList::~TclList() = default;\n",
            # Tcl keeps freed objects for the next ones, so no sanitizer sees it, but the texts are others.
            "wrong answers", "native", "reentrance", "vernoxa_tcl_tests", ("--gtest_filter=ReenteredCommands.*",)),
    Planted("an off-by-one in the frame", "src/link/socket_client.cpp",
            "  while (received < length) {\n", "  while (received + 1 < length) {\n",
            "wrong answers", "native", "native", "vernoxa_trust_tests", ("--gtest_filter=StreamFault.TheHosts*EveryByte",),
            everything=True),
    Planted("a lock not released", "src/dispatch/dispatcher.cpp",
            "  ~HeldLock() { lock_.release(); }\n",
            "  ~HeldLock() {\n    if (std::uncaught_exceptions() == 0) {\n      lock_.release();\n    }\n  }\n",
            "wrong answers", "native", "native", "vernoxa_trust_tests", ("--gtest_filter=FaultLoop.CompanionPackets",),
            everything=True),
    Planted("a script value unescaped", "src/tcl/script.cpp",
            "if ((c == '\"' || c == '[' || c == '$') &&", "if ((c == '\"' || c == '$') &&",
            "unintended evaluations", "native", "corpora", *_CORPORA),
    Planted("a file lost on a full disk", "src/system/whole_file.cpp",
            "  const Written written = write(files, beside, content);\n",
            "  files.removeFile(path);\n  const Written written = write(files, beside, content);\n",
            "wrong answers", "native", "native", "vernoxa_trust_tests", ("--gtest_filter=BrokenDisk.*",)),
    Planted("a companion that began again, unnoticed", "src/designs/thread_handlers.cpp",
            "  if (!connected) {\n    designs", "  if (!connected && designs.all().empty()) {\n    designs",
            "wrong answers", "native", "native", "vernoxa_trust_tests", ("--gtest_filter=BothEndsTest.*",)),
    Planted("a message lost that was noted as told", "src/designs/thread_handlers.cpp",
            "  if (!sender.send(host, message.printUnformatted()).ok) {\n    return;\n  }\n",
            "  sender.send(host, message.printUnformatted());\n",
            "wrong answers", "native", "native", "vernoxa_trust_tests", ("--gtest_filter=BothEndsTest.*",)),
    Planted("an exception across C", "src/plugin/command_guard.cpp",
            "  } catch (...) {\n", "  } catch (const std::logic_error&) {\n",
            "crashes", "native", "native", "vernoxa_trust_tests", ("--gtest_filter=FaultLoop.Commands",),
            everything=True),
)
