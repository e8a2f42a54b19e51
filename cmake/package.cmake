# What the package for the users holds, and where it lies there. ./dev dist installs it into a folder of its own and
# makes a zip of that.
set(root ${CMAKE_SOURCE_DIR})
set(workshop ${root}/workshop/vernoxa)
install(TARGETS Vernoxa64 LIBRARY DESTINATION bin)
install(DIRECTORY ${root}/package/ DESTINATION . PATTERN helper EXCLUDE PATTERN __pycache__ EXCLUDE)
install(DIRECTORY ${root}/docs/ DESTINATION docs FILES_MATCHING PATTERN *.json PATTERN *.png PATTERN report-*.png EXCLUDE)

# Behind the programs in conformance.
install(FILES ${workshop}/__init__.py ${workshop}/command.py ${workshop}/places.py DESTINATION conformance/vernoxa)
install(DIRECTORY ${workshop}/wire DESTINATION conformance/vernoxa FILES_MATCHING PATTERN *.py PATTERN __pycache__ EXCLUDE)
install(DIRECTORY ${root}/tests/conversations DESTINATION conformance/recorded
  FILES_MATCHING PATTERN *.txt PATTERN __pycache__ EXCLUDE)
install(FILES ${root}/tools/docs/procedures.txt DESTINATION conformance/recorded)

# Behind check.cmd: a Tcl for Windows. A shell needs these files of its library; the rest is for other lands and other
# programs.
set(tcl ${root}/.deps/tcl-windows)
install(TARGETS helper LIBRARY DESTINATION check)
install(DIRECTORY ${tcl}/bin DESTINATION check/tcl FILES_MATCHING PATTERN *.exe PATTERN *.dll)
install(DIRECTORY ${tcl}/lib/reg1.3 DESTINATION check/tcl/lib FILES_MATCHING PATTERN *.dll PATTERN *.tcl)
set(library init.tcl auto.tcl package.tcl tm.tcl word.tcl tclIndex)
list(TRANSFORM library PREPEND ${tcl}/lib/tcl8.6/)
install(FILES ${library} DESTINATION check/tcl/lib/tcl8.6)
install(DIRECTORY ${tcl}/lib/tcl8.6/encoding DESTINATION check/tcl/lib/tcl8.6 FILES_MATCHING PATTERN *.enc)

# What is in the package of others, and where the set-up and the distribution keep the words under which it may.
foreach(licence
    "Vernoxa|${root}/LICENSE"
    "cJSON|${root}/.deps/src/cjson/LICENSE"
    "Tcl|${root}/.deps/src/tcl/license.terms"
    "zlib|${root}/.deps/src/tcl/compat/zlib/README"
    "GCC run-time library|/usr/share/doc/gcc-mingw-w64-base/copyright"
    "GNU General Public License 3|/usr/share/common-licenses/GPL-3"
    "mingw-w64 and winpthreads|/usr/share/doc/mingw-w64-x86-64-dev/copyright")
  string(REPLACE "|" ";" licence ${licence})
  list(GET licence 0 name)
  list(GET licence 1 file)
  install(FILES ${file} DESTINATION licences RENAME "${name}.txt")
endforeach()

# Pages, names of the protocol, line ends, checksums.
install(CODE "execute_process(COMMAND \${CMAKE_COMMAND} -E env PYTHONPATH=${root}/workshop
  python3 -P -m vernoxa.dist.finish \${CMAKE_INSTALL_PREFIX} ${PROJECT_VERSION} COMMAND_ERROR_IS_FATAL ANY)")
