#!/usr/bin/env bash
# test_service.sh SOURCE-DIRECTORY
#
# The service for live screens has few rights: systemd's own measure of its exposure is below 2.5 of 10. What it leaves goes
# with a purge of the package.
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }
# What systemd has made for the service goes with a purge, and with nothing before.
wants=etc/systemd/system/multi-user.target.wants
mkdir -p "$work/root/var/lib/zyr-host/ada" "$work/root/$wants"
touch "$work/root/var/lib/zyr-host/ada/token" "$work/root/var/lib/other" "$work/root/$wants/other.service"
ln -s /usr/lib/systemd/system/zyr-host-serve@.service "$work/root/$wants/zyr-host-serve@ada.service"
for step in remove upgrade; do
    DPKG_ROOT=$work/root sh "$source/packaging/zyrmont-host.postrm" "$step"
    [ "$(find "$work/root" ! -type d | wc -l)" = 4 ] || fail "something is gone with $step"
done
DPKG_ROOT=$work/root sh "$source/packaging/zyrmont-host.postrm" purge
left=$(cd "$work/root" && find . ! -type d | sort | tr '\n' ' ')
[ "$left" = "./$wants/other.service ./var/lib/other " ] || fail "a purge leaves $left"
[ ! -e "$work/root/var/lib/zyr-host" ] || fail "a purge leaves the directory of tokens"

# The instance of somebody, since a template alone is no unit.
unit=$work/zyr-host-serve@ada.service
# within UNIT: what is offered is measured without a running systemd.
within() { systemd-analyze security --offline=true --threshold=24 "$1" >"$work/exposure" 2>&1; }

printf '[Service]\nExecStart=/bin/true\nUser=nobody\nProtectSystem=strict\n' >"$unit"
code=0
within "$unit" || code=$?
grep -q 'Overall exposure level' "$work/exposure" || { echo "skipped: no systemd-analyze here that measures units of files"; exit 77; }
[ $code != 0 ] || fail "a unit without limits passes: this measures nothing"

cp "$source/packaging/zyr-host-serve@.service" "$unit"
within "$unit" || { tail -n 1 "$work/exposure"; fail "the service is exposed"; }
tail -n 1 "$work/exposure"
grep -q '^RestrictAddressFamilies=.* AF_NETLINK' "$unit" || fail "the addresses of the machine cannot be asked for"
