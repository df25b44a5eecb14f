#!/bin/sh
# make_locale.sh <name> <folder>: makes the locale <name>, with UTF-8, unless the folder holds it.
# Needs the descriptions of locales (Debian package locales), no rights.
set -eu
[ ! -d "$2" ] || exit 0
mkdir -p "$(dirname "$2")"
localedef -i "$1" -f UTF-8 "$2.new"
mv "$2.new" "$2"
