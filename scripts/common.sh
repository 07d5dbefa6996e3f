# Shared by the scripts of this folder; sourced, not run.

cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Where the local cloud listens; the builds of these scripts take it for the cloud
# service. By name: an address of the user's own must lie on another host, and the
# tests use 127.0.0.1 for those.
cloud_port=47113
cloud_url="http://localhost:$cloud_port"

configure() { # preset
    cmake --preset "$1" -DNIVORA_CLOUD_ENDPOINT="$cloud_url" \
        -DNIVORA_UPDATE_ENDPOINT="$cloud_url" --log-level=WARNING
}

say() {
    printf '%s\n' "$*" >&2
}
