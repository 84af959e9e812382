#!/bin/sh
# Converts web archives as a Slurm job array, a shard a task, and writes a report when all tasks have ended:
#
#   slurm.sh SHARDS SOURCE FOLDER [OPTION...]
#
# SOURCE is a folder with archives; FOLDER gets the PDFs. Both are where all nodes see them. Options are those of
# web2pdf-batch. It prints the numbers of both jobs. The same call again converts what is left. Copy this file and change
# the next lines to what your cluster has; SBATCH_PARTITION, SBATCH_ACCOUNT and the like hold, too.
#SBATCH --job-name=web2pdf
#SBATCH --cpus-per-task=2
#SBATCH --mem-per-cpu=1500M
#SBATCH --time=04:00:00
#SBATCH --signal=B:TERM@120
#SBATCH --requeue
#SBATCH --open-mode=append
set -eu

# Within a job, Slurm calls this file, too.
case ${1-} in
    shard)
        shard=$SLURM_ARRAY_TASK_ID/$2 source=$3 folder=$4
        shift 4
        exec web2pdf-batch --shard "$shard" -o "$folder" "$@" "$source"
        ;;
    report) exec web2pdf-batch --report "$2/report.html" -o "$2" ;;
esac

[ $# -ge 3 ] || { sed -n '4s/^# *//p' "$0" >&2; exit 2; }
shards=$1
source=$(realpath -- "$2")
folder=$(realpath -m -- "$3")
shift 3

job=$(sbatch --parsable --array="0-$((shards - 1))" "$0" shard "$shards" "$source" "$folder" "$@")
report=$(sbatch --parsable --dependency="afterany:${job%;*}" --cpus-per-task=1 "$0" report "$folder")
echo "shards: ${job%;*}, report: ${report%;*}"
