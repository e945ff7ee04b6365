# Reads package source files of both formats; -v address and -v suite name the entry to look for.

function hasWord(text, word,    words, count, i) {
    count = split(text, words, /[ \t\n]+/)
    for (i = 1; i <= count; i++)
        if (words[i] == word)
            return 1
    return 0
}

# A trailing slash makes no other address.
function hasAddress(text) { return hasWord(text, address) || hasWord(text, address "/") || hasWord(text "/", address) }

function consider(types, addresses, suites, components, stanza) {
    if (!hasWord(types, "deb") || !hasAddress(addresses) || !hasWord(suites, suite))
        return
    if (hasWord(components, "non-free"))
        offered = 1
    if (hasWord(components, "main") && found == "")
        found = stanza
}

function endStanza(    i, field, stanza) {
    stanza = "Types: deb"
    for (i = 1; i <= fieldCount; i++) {
        field = fields[i]
        if (field !~ /^(types|components|enabled)$/)
            stanza = stanza "\n" names[field] ":" values[field]
    }
    stanza = stanza "\nComponents: non-free"
    if (tolower(values["enabled"]) !~ /no|false|off|0/)
        consider(values["types"], values["uris"], values["suites"], values["components"], stanza)
    delete values
    fieldCount = 0
    last = ""
}

function readField(    colon) {
    colon = index($0, ":")
    last = tolower(substr($0, 1, colon - 1))
    fields[++fieldCount] = last
    names[last] = substr($0, 1, colon - 1)
    values[last] = substr($0, colon + 1)
}

function optionField(option,    name, value) {
    name = tolower(substr(option, 1, index(option, "=") - 1))
    value = substr(option, index(option, "=") + 1)
    gsub(/,/, " ", value)
    if (name == "signed-by")
        return "\nSigned-By: " value
    if (name == "arch")
        return "\nArchitectures: " value
    if (name == "trusted")
        return "\nTrusted: " value
    return ""
}

# deb [ options ] address suite component...
function readLine(    line, options, extra, words, count, i, components) {
    line = $0
    sub(/#.*/, "", line)
    if (match(line, /\[[^]]*\]/)) {
        count = split(substr(line, RSTART + 1, RLENGTH - 2), options, /[ \t]+/)
        for (i = 1; i <= count; i++)
            extra = extra optionField(options[i])
        line = substr(line, 1, RSTART - 1) substr(line, RSTART + RLENGTH)
    }
    $0 = line
    for (i = 4; i <= NF; i++)
        components = components " " $i
    consider($1, $2, $3, components,
        "Types: deb\nURIs: " $2 "\nSuites: " $3 extra "\nComponents: non-free")
}

FNR == 1 { endStanza() }
FILENAME ~ /\.list$/ { if (!/^[ \t]*(#|$)/) readLine(); next }
/^[ \t]*$/ { endStanza(); next }
/^#/ { next }
/^[ \t]/ { values[last] = values[last] "\n" $0; next }
{ readField() }
END {
    endStanza()
    if (!offered && found != "")
        print found
}
