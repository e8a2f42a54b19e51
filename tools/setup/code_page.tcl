# Prints "cp" and the Windows code page (what GetACP answers): Tcl's system encoding.
puts [encoding system]
