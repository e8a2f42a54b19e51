#!/bin/bash
# Makes the locales in which Windows programs have other code pages than 936: 1252, 65001, 950 and 932.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/environment.sh"

for locale in en_US hi_IN zh_TW ja_JP; do
  LC_ALL=C localedef -i "$locale" -f UTF-8 "$LOCPATH/$locale.UTF-8"
done
