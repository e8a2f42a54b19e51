# Holds Wine's desktop for a suite: hold_desktop.tcl STARTED
# Writes the file STARTED once windows can be made, and goes on until the suite ends it.
#
# Wine starts a desktop for the first window, and ends it a second after the last program that has one. Where its start
# takes more than ten seconds, the program that waits for it does without: it has no windows, and Tcl no sockets. On a
# busy machine that would be one program in thousands. Here it is status 3, without the file, and whoever began this
# begins it again a few times.
if {[catch {close [socket -server {} -myaddr 127.0.0.1 0]}]} {
  exit 3
}
close [open [lindex $argv 0] w]
vwait forever
