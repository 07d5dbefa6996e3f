# Shared by the scripts of this folder; sourced, not run.

cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Where the local cloud listens. The builds of these scripts take it for the
# cloud service.
cloud_port=47113
cloud_url="http://127.0.0.1:$cloud_port"

configure() { # preset
    cmake --preset "$1" -DNIVORA_CLOUD_ENDPOINT="$cloud_url" --log-level=WARNING
}

say() {
    printf '%s\n' "$*" >&2
}
