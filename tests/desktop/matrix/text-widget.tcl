# Shows the file that it is given in a text widget of Tk.
text .text -undo true -width 60 -height 12
pack .text -fill both -expand true
set file [open [lindex $argv 0]]
fconfigure $file -encoding utf-8
.text insert 1.0 [read -nonewline $file]
.text edit reset
focus .text
