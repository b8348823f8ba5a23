#!/bin/sh
# Sessions 1 to 40, four at a time:
#   sbatch --array=1-40%4 slurm-array.sh
# /srv/loads is a folder that all nodes see, with vrrepo.mdb and a link to varnel in it. A session gets SIGTERM five
# minutes before its time is up and on scancel; it then finishes the row or batch at hand and closes its log. Its exit
# status is that of the job.
#SBATCH --job-name=varnel
#SBATCH --ntasks=1
#SBATCH --cpus-per-task=1
#SBATCH --mem=256M
#SBATCH --time=04:00:00
#SBATCH --signal=TERM@300
#SBATCH --no-requeue
#SBATCH --output=/srv/loads/slurm-%A_%a.out

cd "${LOADS:-/srv/loads}" || exit 2
exec srun "$PWD/varnel" "$SLURM_ARRAY_TASK_ID"
