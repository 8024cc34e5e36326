#!/usr/bin/dash
. "$SYSINFO_RIG/record"
exec tar -czf "$1" -C / etc/hostname etc/imageid etc/resolv.conf
