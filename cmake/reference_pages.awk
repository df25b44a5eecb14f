# For the reference only: gives the headings of a page names, which differ from page to page, and lets
# the page's links to its own headings and to files of examples/ (copied beside the pages) lead there.

FNR == 1 { page = FILENAME; gsub(/.*\/docs\/|\.md$/, "", page); gsub(/[^A-Za-z]/, "-", page) }
/^```/ { is_code = !is_code }
!is_code && /^##+ / {
    anchor = tolower($0)
    sub(/^#+ /, "", anchor)
    gsub(/[^a-z0-9 _-]/, "", anchor)
    gsub(/ /, "-", anchor)
    $0 = $0 " {#" page "-" anchor "}"
}
!is_code {
    gsub(/\]\(#/, "](@ref " page "-")
    gsub(/\]\((\.\.\/)+examples\/([a-z_]+\/)*/, "](")
}
{ print }
