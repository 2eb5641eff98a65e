#!/bin/sh
# The job command of the test's IPP printer: records the job-account-id it
# received in $PDE_PRINTER_RECORDS/<job name>, whole or not at all.
printf '%s\n' "${IPP_JOB_ACCOUNT_ID-}" >"$PDE_PRINTER_RECORDS/.$IPP_JOB_ID" &&
    mv "$PDE_PRINTER_RECORDS/.$IPP_JOB_ID" "$PDE_PRINTER_RECORDS/$IPP_JOB_NAME"
