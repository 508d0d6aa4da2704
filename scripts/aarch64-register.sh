#!/usr/bin/env bash
# Registers the emulator for 64-bit ARM programs in the present user namespace, then executes the arguments.
# scripts/aarch64.sh calls this inside a namespace of its own.
set -euo pipefail
emulator=$(command -v qemu-aarch64-static)
mount -t binfmt_misc none /proc/sys/fs/binfmt_misc
# The head of an ELF file for this machine: 64 bits, little-endian, executable or shared, machine 0xb7.
magic='\x7fELF\x02\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\xb7\x00'
mask='\xff\xff\xff\xff\xff\xff\xff\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff'
# P: the program sees the first argument that its caller gave it. F: the emulator is opened now, whatever is mounted later.
printf '%s' ":aarch64:M::$magic:$mask:$emulator:PF" >/proc/sys/fs/binfmt_misc/register
exec "$@"
