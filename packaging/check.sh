#!/usr/bin/env bash
# Builds the Debian package, looks through it, installs it into a bare root and uses it there.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/packages.sh

fail() {
    echo "packaging/check.sh: $*" >&2
    exit 1
}

as_root=()
if ((EUID != 0)); then
    command -v sudo >/dev/null || fail "the bare root needs root or sudo"
    as_root=(sudo)
fi
need_packages "${package_check_packages[@]}"
deb=$(scripts/package.sh)
[[ -f $deb ]] || fail "scripts/package.sh made no package"

tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
dpkg-deb -x "$deb" "$tree"

echo "lintian"
lintian_as=()
((EUID != 0)) || lintian_as=(--allow-root)
lintian "${lintian_as[@]}" --profile debian --fail-on error,warning "$deb"

echo "Desktop entry and AppStream data"
desktop-file-validate "$tree"/usr/share/applications/*.desktop
appstreamcli validate --no-net "$tree"/usr/share/metainfo/*.metainfo.xml

echo "Man page"
# Wide, so that no option is broken at the end of a line; errors of the page go to standard error.
page=$(MANWIDTH=1000 LC_ALL=C.UTF-8 man --warnings -l "$tree/usr/share/man/man1/twinstep.1.gz" 2>"$tree/complaints")
[[ ! -s $tree/complaints ]] || fail "the man page has faults: $(<"$tree/complaints")"
options_of() { grep -oE -e '--[a-z][a-z0-9-]*' | sort -u; }
differing=$(diff <("$tree/usr/bin/twinstep" --help | options_of) <(options_of <<<"$page")) ||
    fail "--help (<) and the man page (>) name different options: $differing"
"$tree/usr/bin/twinstep" --help | grep -oE '^  --?[a-z0-9-]+' | while read -r option; do
    grep -qE "^ {7}(-[a-z], )?$option( |\$)" <<<"$page" || fail "the man page does not explain $option"
done

echo "Links of the help page and the texts"
ln -s /usr/share/common-licenses "$tree/usr/share/common-licenses" # of base-files, which no Debian lacks
# check_links PAGE: each link that begins with no scheme must lead to a file.
check_links() {
    local page=$1 links link
    case $page in
    *.html) mapfile -t links < <(grep -oE '(href|src)="[^"]*"' "$page" | cut -d '"' -f 2) ;;
    *.md) mapfile -t links < <(grep -oE '\]\([^)]*' "$page" | cut -c 3-) ;;
    esac
    [[ $page != *.html ]] || ((${#links[@]})) || fail "no link was found in ${page##*/}"
    for link in "${links[@]}"; do
        [[ $link =~ ^(#|[a-z]+:) || -e ${page%/*}/${link%%#*} ]] || fail "$link in ${page##*/} is not in the package"
    done
}
check_links "$tree/usr/share/twinstep/docs/help.html"
for page in "$tree"/usr/share/doc/twinstep/*.md "$tree"/usr/share/twinstep/docs/*.md; do
    check_links "$page"
done

echo "A bare root"
# In namespaces of its own: what is mounted and started there ends with it, however it ends.
"${as_root[@]}" unshare --mount --pid --fork --kill-child packaging/bare_root.sh "$deb"
echo "The package is well: $deb"
