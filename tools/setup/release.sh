# Sourced: the systems on which everything here is built and run, and all that differs between them.
#   needed_system   what is needed, in words
#   found_system    what this machine is, in words
#   clang_version   the version of clang that the release's package clang brings; empty on a system that is not known
#   judging_clang   the version whose clang-format and clang-tidy judge: each version finds and arranges other things
needed_system="Debian 12 or 13 for amd64"
judging_clang=14  # Debian 12's

architecture=$(dpkg --print-architecture 2>/dev/null || uname -m)
found_system=$(. /etc/os-release 2>/dev/null && echo "${PRETTY_NAME:-${ID:-Linux}}") || found_system=$(uname -s)
found_system+=" for $architecture"
case $(. /etc/os-release 2>/dev/null && echo "${ID:-} ${VERSION_ID:-} $architecture") in
  "debian 12 amd64") clang_version=14 ;;
  "debian 13 amd64") clang_version=19 ;;
  *) clang_version= ;;
esac
