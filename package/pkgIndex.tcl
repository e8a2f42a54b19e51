# $dir is where this file lies. The path has to be whole, since the plug-in finds its folders from it, and the prefix has
# to be given, since Tcl would guess it from the file's name, digits cut off.
package ifneeded Vernoxa 1.0 [list load [file normalize [file join $dir bin Vernoxa64.dll]] Vernoxa]
