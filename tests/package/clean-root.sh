#!/usr/bin/env bash
# Tries the Debian packages as a new user would, in a root of its own that debootstrap makes with the base
# system only: installs them, follows the five-minute start and the recipes, opens manual pages,
# completes commands in bash and zsh, removes them again. Needs root and the network. Usage: clean-root.sh DIST_DIR
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
dist=$(realpath "$1")
root=$(mktemp -d)
[[ $(id -u) -eq 0 ]] || { echo "clean-root.sh: only root can make a root of its own" >&2; exit 1; }

clean_up() {
    local place
    for place in dev/pts proc; do ! mountpoint -q "$root/$place" || umount "$root/$place"; done
    rm -rf --one-file-system "$root"
}
trap clean_up EXIT

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
step() { printf '\n-- %s\n' "$*"; }

step "A root with the base system"
chmod 755 "$root" # others than root read in it as well
codename=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
debootstrap --variant=minbase "$codename" "$root" >"$root.log" 2>&1 || { tail "$root.log"; exit 1; }
rm -f "$root.log"
rm -f "$root/etc/apt/sources.list"
cp -r /etc/apt/sources.list* "$root/etc/apt/"
[[ ! -e /etc/resolv.conf ]] || cp -L /etc/resolv.conf "$root/etc/"
mount -t proc proc "$root/proc" || echo "(without /proc)"
mount -t devpts devpts "$root/dev/pts" || echo "(without terminals)"

step "Installing the packages"
mkdir "$root/dist"
cp "$dist"/*.deb "$root/dist"
inside apt-get update -qq
inside bash -c 'apt-get install -y -qq --no-install-recommends /dist/*.deb' >/dev/null
inside olvex --version

step "The five-minute start, the recipes and the other pages with programs"
inside apt-get install -y -qq --no-install-recommends gcc g++ libc6-dev pkg-config man-db bash-completion zsh >/dev/null
mkdir "$root/docs"
cp "$top"/docs/*.md "$top/tests/install/start.sh" "$root/docs"
for page in getting-started recipes extending; do
    [[ ! -e $root/docs/$page.md ]] || inside bash /docs/start.sh "/docs/$page.md" "/root/$page"
done

step "Manual pages and completion"
# shellcheck disable=SC2016
inside bash -c 'for page in $(dpkg -L olvex | grep "/man[15]/"); do man "$page" >/dev/null 2>&1 || exit; done; man -w olvex-view'
# shellcheck disable=SC2016
inside bash -c '. /usr/share/bash-completion/completions/olvex
    COMP_WORDS=(olvex vi) COMP_CWORD=1; _olvex; [[ ${COMPREPLY[*]} == view ]] && echo "vi completes to view"'
cp "$top/tests/package/completes.zsh" "$root/docs"
completes() { inside timeout 60 zsh -f /docs/completes.zsh "$@" || { echo "FAILED: in zsh, $1 does not complete to $2" >&2; exit 1; }; }
completes 'olvex vi' 'olvex view'
completes 'olvex catalog co' 'olvex catalog compile'
completes 'olvex --v' 'olvex --version'
completes 'olvex view --format x' 'olvex view --format xml'

step "The library needs nothing but the C library"
inside dpkg-query -W -f "\${Depends}\n" libolvex0

step "Removing them again"
inside apt-get purge -y -qq olvex libolvex-dev libolvex-doc libolvex0 >/dev/null
left=$(find "$root/usr" -path '*olvex*' | head)
[[ -z $left ]] || { echo "FAILED: left behind: $left" >&2; exit 1; }
echo "ok: nothing is left behind"
