# Sourced by the scripts that fetch Debian packages which this machine's apt is not set up for:
# sources, and another architecture. They come from the mirrors that it is set up for, authenticated
# by Debian's keys; its own lists and caches stay as they are. No root is needed.

readonly keyring=/usr/share/keyrings/debian-archive-keyring.gpg

# fail SENTENCE ends the script that sources this.
fail() {
  echo "$(basename "$0"): $*" >&2
  exit 1
}

# private_apt_init FOLDER ENTRY [FILTER...] makes FOLDER apt's own for private_apt. ENTRY begins the
# lines of its sources.list: "deb-src", or "deb arch=i386". The filters narrow down the indexes, as
# in 'Label: Debian', which leaves out the security updates.
private_apt_init() {
  apt_folder=$1
  local type options
  read -r type options <<<"$2"
  shift 2
  mkdir -p "$apt_folder"/{lists,cache/archives}/partial
  # shellcheck disable=SC2016 # the fields are apt's, not the shell's
  apt-get indextargets \
    --format "$type [signed-by=$keyring $options] "'$(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian' "$@" | sort -u >"$apt_folder/sources.list"
  [[ -s $apt_folder/sources.list ]] ||
    fail "apt knows no package of Debian; run apt-get update first"
  private_apt update
}

# private_apt ARGUMENT... is apt-get on those indexes, downloading into the current folder.
private_apt() {
  apt-get -qq -o Dir::Etc::SourceList="$apt_folder/sources.list" -o Dir::Etc::SourceParts=/dev/null \
    -o Dir::State::Lists="$apt_folder/lists" -o Dir::Cache="$apt_folder/cache" \
    -o APT::Sandbox::User="$(id -un)" -o Acquire::Retries=3 "$@"
}
