#!/usr/bin/env bash
# test_service.sh SOURCE-DIRECTORY
#
# The service for live screens has few rights: systemd's own measure of its exposure is below 2.5 of 10.
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }
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
