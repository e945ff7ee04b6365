# Turns the newest part of CHANGELOG.md into a Debian changelog; -v version= and -v date= (RFC 2822) say whose.

# Entries of any length become lines of at most 78 characters.
function printEntry(    words, count, i, line) {
    if (entry == "")
        return
    count = split(entry, words, " ")
    line = "  *"
    for (i = 1; i <= count; i++) {
        if (length(line) + 1 + length(words[i]) > 78) {
            print line
            line = "   "
        }
        line = line " " words[i]
    }
    print line
    entry = ""
}

BEGIN { print "vormel (" version ") stable; urgency=medium\n" }
/^## / { if (++parts > 1) exit; next }
/^- / { printEntry(); entry = substr($0, 3); next }
/^ / && entry != "" { entry = entry " " $0; next }
END {
    printEntry()
    print "\n -- Vormel developers <developers@vormel.example>  " date
}
