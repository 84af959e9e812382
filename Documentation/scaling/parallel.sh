#!/bin/sh
# Converts web archives on several hosts, a shard at a time on each, with GNU parallel and ssh, and writes a report:
#
#   parallel.sh HOSTS SHARDS SOURCE FOLDER [OPTION...]
#
# HOSTS are names that ssh knows, separated by commas; ":" is this machine. SOURCE is a folder with archives; FOLDER gets
# the PDFs. Both are where all hosts see them, under the same path. Options are those of web2pdf-batch.
# A shard whose host fails is done by another one. The same call again converts what is left.
#
# Exit status, as of web2pdf-batch: 0 all converted, 1 some archives failed, 2 usage, 130 some shards did not end.
set -eu

[ $# -ge 4 ] || { sed -n '4s/^# *//p' "$0" >&2; exit 2; }
hosts=$1
shards=$2
source=$(realpath -- "$3")
folder=$(realpath -m -- "$4")
shift 4

# A host that is silent for a minute has failed.
export PARALLEL_SSH="${PARALLEL_SSH:-ssh -o BatchMode=yes -o ConnectTimeout=20 -o ServerAliveInterval=20}"

mkdir -p "$folder"
log=$folder/parallel.log
status=$folder/parallel.status
rm -f "$log" "$status".*

# Another host would find the same failures: only shards that did not end are tried again. What the others ended with
# is kept in files, since parallel knows of failures only.
# shellcheck disable=SC2016 # the inner shell's variables
seq 0 $((shards - 1)) | parallel --quote --sshlogin "$hosts" --jobs 1 --retries 3 --line-buffer --joblog "$log" \
    sh -c 'web2pdf-batch "$@"; ended=$?; [ $ended -le 2 ] || exit $ended; : >"$0.$ended"' \
    "$status" --shard "{}/$shards" -o "$folder" "$@" "$source" || true
web2pdf-batch --report "$folder/report.html" -o "$folder" || true

lost=$(awk -v shards="$shards" 'NR > 1 && $7 == 0 && $8 == 0 { ended++ } END { print shards - ended }' "$log")
[ "$lost" -eq 0 ] || echo "parallel.sh: shards that did not end: $lost" >&2

if [ -e "$status.2" ]; then
    exit 2
elif [ "$lost" -ne 0 ]; then
    exit 130
elif [ -e "$status.1" ]; then
    exit 1
fi
