#!/usr/bin/env bash
# bare_root.sh PACKAGE: installs the package into a Debian system that has nothing else, starts the program there as
# an ordinary user, and removes it again. Run by check.sh, as root and in a mount namespace of its own.
set -euo pipefail

deb=$1
root=$(mktemp -d "$PWD/build/bare_root.XXXXXX")
chmod 755 "$root" # an ordinary user enters it too
export LC_ALL=C.UTF-8

fail() {
    echo "packaging/bare_root.sh: $*" >&2
    exit 1
}

clean_up() {
    umount "$root/sys" "$root/proc" 2>/dev/null || true
    rm -rf --one-file-system "$root"
}
trap clean_up EXIT

# quietly COMMAND...: shows what the command said only when it fails.
quietly() {
    "$@" >"$root.log" 2>&1 || {
        cat "$root.log" >&2
        rm -f "$root.log"
        fail "failed: $*"
    }
    rm -f "$root.log"
}

# The host's own sources of Debian packages, one a line: address, suite, component.
# shellcheck disable=SC2016  # apt fills the fields in
sources=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
    sort -u)
# shellcheck disable=SC1091
suite=$(source /etc/os-release && echo "$VERSION_CODENAME")
mirror=$(awk -v suite="$suite" '$2 == suite { print $1; exit }' <<<"$sources")
[[ $mirror ]] || fail "apt knows no source of Debian's $suite; run apt-get update"
# debootstrap does not ask apt for a proxy.
eval "$(apt-config shell apt_proxy Acquire::http::Proxy)"
if [[ ${apt_proxy:-} && -z ${http_proxy:-} ]]; then export http_proxy=$apt_proxy; fi

quietly debootstrap --variant=minbase "$suite" "$root" "$mirror"
awk '{ print "deb", $1, $2, $3 }' <<<"$sources" >"$root/etc/apt/sources.list"
apt-config dump | grep -E '^Acquire::(http|https|Check-)' >"$root/etc/apt/apt.conf.d/90host" || true
mountpoint -q "$root/proc" || mount -t proc proc "$root/proc"
mountpoint -q "$root/sys" || mount -t sysfs -o ro sysfs "$root/sys"

in_root() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }

echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/unsafe-io" # nobody mourns this root
quietly in_root apt-get update
cp "$deb" "$root/tmp/"
quietly in_root apt-get install -y --no-install-recommends "/tmp/${deb##*/}"
quietly in_root useradd --create-home ham
user=$(in_root id -u ham):$(in_root id -g ham)
home=/home/ham
mkdir "$root$home/shack"
mkdir --mode=700 "$root/run/ham"
chown "$user" "$root$home/shack" "$root/run/ham"

# as_user COMMAND...: as the user, in the folder "shack", with nothing of this shell's environment.
as_user() {
    exec chroot --userspec="$user" "$root" env -i PATH=/usr/bin:/bin HOME="$home" XDG_RUNTIME_DIR=/run/ham \
        QT_QPA_PLATFORM=offscreen sh -c 'cd ~/shack && exec "$@"' sh "$@"
}

version=$(dpkg-deb -f "$deb" Version)
told=$(as_user twinstep --version)
[[ $told == "twinstep $version" ]] || fail "--version says '$told', the package is $version"

# Started by hand the watchdog has nothing to guard. That it says so shows its place and that it lacks no library.
result=0
told=$(as_user /usr/libexec/twinstep/twinstep-watchdog 2>&1) || result=$?
[[ $result == 2 && $told == "twinstep-watchdog: twinstep starts this program"* ]] ||
    fail "the installed watchdog ends with $result and says '$told'"

# run FOLDER COMMAND...: starts the program and ends it; its settings, and nothing else, must lie in that folder.
run() {
    local folder=$1 trace=$root$home/shack/trace program result=0
    shift
    find "$root$home" -name save.cfg -delete
    rm -f "$trace"
    (as_user "$@" --trace trace) &
    program=$!
    # The start writes all eight outputs.
    local waited=0
    until [[ $(grep -c '^[0-9]* port [1-8] 1$' "$trace" 2>/dev/null) -ge 8 ]]; do
        kill -0 "$program" 2>/dev/null || fail "'$*' ended at once"
        ((++waited <= 300)) || fail "'$*' has not written its outputs after 30 seconds"
        sleep 0.1
    done
    local at_start
    at_start=$(wc -l <"$trace")
    kill -TERM "$program"
    for ((waited = 0; waited < 300; waited++)); do
        kill -0 "$program" 2>/dev/null || break
        sleep 0.1
    done
    ((waited < 300)) || fail "'$*' has not ended 30 seconds after SIGTERM"
    wait "$program" || result=$?
    ((result == 0)) || fail "'$*' ended with $result on SIGTERM"
    (($(tail -n "+$((at_start + 1))" "$trace" | grep -c '^[0-9]* port [1-8] 1$') >= 8)) ||
        fail "'$*' did not switch its outputs off at the end"
    local kept
    kept=$(find "$root$home" -name save.cfg -printf '%P\n')
    [[ $kept == "$folder/save.cfg" ]] || fail "'$*' should keep $folder/save.cfg, it kept '$kept'"
    [[ -s $root$home/$kept ]] || fail "'$*' left $kept empty"
    echo "  $*: outputs written, ~/$folder/save.cfg kept, exit 0"
}

run shack twinstep
read -ra from_menu < <(sed -n 's/^Exec=//p' "$root/usr/share/applications/twinstep.desktop")
run .local/share/twinstep "${from_menu[@]}"

# What udev makes of a board with this product number, emulated.
quietly in_root apt-get install -y --no-install-recommends udev umockdev
board_is_open() {
    local board=/devices/pci0000:00/usb1/1-1
    local hid=$board/1-1:1.0/0003:10CF:$1.0001/hidraw/hidraw0
    cat >"$root/tmp/board.umockdev" <<END
P: $board
E: SUBSYSTEM=usb
E: DEVTYPE=usb_device
A: idVendor=10cf
A: idProduct=$1

P: $hid
E: SUBSYSTEM=hidraw
E: MAJOR=241
E: MINOR=0
END
    in_root umockdev-run -d /tmp/board.umockdev -- udevadm test --action=add "/sys$hid" >"$root/tmp/udev.log" 2>&1 ||
        fail "udevadm test failed: $(<"$root/tmp/udev.log")"
    grep -q '^SUBSYSTEM=hidraw' "$root/tmp/udev.log" || fail "udev saw no board: $(<"$root/tmp/udev.log")"
    # 46 is the group plugdev, a number that Debian has fixed.
    grep -q '70-twinstep.rules:[0-9]* GROUP 46' "$root/tmp/udev.log" && grep -q '^TAGS=.*:uaccess:' "$root/tmp/udev.log"
}
for product in 5500 5501 5502 5503; do
    board_is_open "$product" || fail "the rule leaves a board $product to root: $(<"$root/tmp/udev.log")"
done
! board_is_open 5504 || fail "the rule gives away a device 5504 that is no such board"
echo "  udev gives the boards 5500 to 5503, and no other, to the user"

quietly in_root apt-get purge -y twinstep
left=$(cd "$root" && find etc usr var/lib/dpkg/info -path '*twinstep*')
[[ -z $left ]] || fail "the removed package leaves $left"
[[ -s $root$home/.local/share/twinstep/save.cfg ]] || fail "the removed package took the user's settings along"
echo "  removed: nothing is left but the user's settings"
