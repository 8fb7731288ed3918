#!/usr/bin/env bash
# Debian's own judgement of the packages. What is overridden stands in cmake/debian/*.lintian-overrides, with its reasons.
. "$(dirname "$0")/support.sh"
needs lintian
needs_installed
lintian --allow-root --display-info --fail-on error,warning,info "$packages"/*.deb
