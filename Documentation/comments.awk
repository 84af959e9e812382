# Makes Doxygen see what the headers say in plain comments: what a header is about, in its first lines, and the
# selector over a declaration. Every line stays where it is, so that warnings name the right one.

BEGIN { opening = 1 }

opening && /^#pragma once$/ { print "/// @file"; next }
opening && /^$/ { print "///"; next }
opening && /^\/\// { print "/" $0; next }

{ opening = 0 }

/^ *\/\/ [-+] [A-Za-z]/ {
    selector = $0
    sub(/^ *\/\/ /, "", selector)
    print "/// <b>" selector "</b><br>"
    next
}

{ print }
