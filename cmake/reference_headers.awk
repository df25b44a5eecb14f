# For the reference only: what the headers leave unsaid because it goes without saying. A comment holds
# for the overloads that follow it directly too, and copying, moving and destroying are described with
# the class. What is added stands in front of a declaration on its own line, so that the numbers of
# lines in warnings stay right.

# The comment in front of a declaration, as one line.
/^ *\/\/\// {
    line = $0
    sub(/^ *\/\/\/[ <]*/, "", line)
    comment = previous ~ /^ *\/\/\// ? comment " " line : line
}

# Declarations begin at the left margin or, in a class, four spaces further in.
/^(    )?[A-Za-z_~]/ && match($0, /[A-Za-z_~]+( ?[=<]+)?\(/) {
    name = substr($0, RSTART, RLENGTH - 1)
    if (previous !~ /^ *\/\/\//) {
        if ($0 ~ /^ *(virtual )?~/)
            note = "Destroys the object."
        else if ($0 ~ ("[(](const )?" class "&&? ?(other)?[)]"))
            note = ($0 ~ /&&/ ? "Moves" : "Copies") (name == class ? " the object." : " into the object.")
        else if (name == declared && previous ~ /;$/)
            note = comment
    }
    declared = name
}

{
    print note == "" ? $0 : "/** " note " */ " $0
    note = ""
    previous = $0
}

/^(class|struct) .*[{]$/ {
    class = $0
    sub(/ (final )?(: public .*)?[{]$/, "", class)
    sub(/^.* /, "", class)
}
