#!/bin/sh
# xmllint has the same opinion of the schemas and of the ready configurations as the service's own validator: it
# reads each schema on its own, and finds every whole document valid.
set -eu
cd "$(dirname "$0")/.."

for schema in schemas/*.xsd schemas/definitions/*.xsd; do
    status=0
    # No schema declares such an element: 3 is its refusal, 5 that of the schema.
    report=$(echo '<x/>' | xmllint --noout --nonet --schema "$schema" - 2>&1) || status=$?
    if [ $status -ne 3 ]; then
        echo "$schema: $report" >&2
        exit 1
    fi
done
for document in examples/configurations/*.xml; do
    if [ "$(xmllint --nonet --xpath 'name(/*)' "$document")" = dds ]; then
        xmllint --noout --nonet --schema schemas/zuv_brel_service.xsd "$document"
    fi
done
