#include "archive/saved_images.h"

#include "terminal/json.h"
#include "terminal/text.h"

#include <algorithm>
#include <deque>

namespace kelpctl {
namespace {

namespace json = boost::json;

// Nobody saves more at once.
constexpr std::size_t mostImages = 100;

// Null for what is not there.
json::value documentAt(const Documents& documents, const std::string& path)
{
    const auto found = documents.find(path);
    return found == documents.end() ? nullptr : parsedJson(found->second);
}

const json::value* memberOf(const json::value& value, const char* name)
{
    const json::object* object = value.if_object();
    return object == nullptr ? nullptr : object->if_contains(name);
}

const json::array* listAt(const json::value& value, const char* name)
{
    const json::value* member = memberOf(value, name);
    return member == nullptr ? nullptr : member->if_array();
}

bool hasText(const json::array* list)
{
    return list != nullptr && !list->empty();
}

// From the description of an image.
void describe(SavedImage& image, const json::value& description)
{
    if (!description.is_object()) {
        return;
    }
    image.system = wellFormed(textAt(description, "os"));
    image.processor = wellFormed(textAt(description, "architecture"));
    const json::value* settings = memberOf(description, "config");
    image.namesProgram =
        settings != nullptr && (hasText(listAt(*settings, "Cmd")) || hasText(listAt(*settings, "Entrypoint")));
}

// "docker save" writes a list of images, each with its names and the path of its description.
bool addDockerList(SavedImages& images, const Documents& documents)
{
    const json::value list = documentAt(documents, "manifest.json");
    if (!list.is_array() || list.get_array().empty()) {
        return false;
    }
    for (const json::value& row : list.get_array()) {
        SavedImage image;
        if (const json::array* names = listAt(row, "RepoTags"); names != nullptr) {
            for (const json::value& name : *names) {
                if (name.is_string()) {
                    image.names.push_back(wellFormed(std::string(name.get_string())));
                }
            }
        }
        describe(image, documentAt(documents, textAt(row, "Config")));
        if (images.all.size() < mostImages) {
            images.all.push_back(image);
        }
    }
    return true;
}

// "blobs/sha256/0123…" of "sha256:0123…".
std::string blobOf(const json::value& reference)
{
    std::string digest = textAt(reference, "digest");
    std::replace(digest.begin(), digest.end(), ':', '/');
    return "blobs/" + digest;
}

std::string nameOf(const json::value& row)
{
    const json::value* notes = memberOf(row, "annotations");
    if (notes == nullptr) {
        return {};
    }
    const std::string whole = textAt(*notes, "io.containerd.image.name");
    return wellFormed(whole.empty() ? textAt(*notes, "org.opencontainers.image.ref.name") : whole);
}

// What says how an image was built stands in the list like one.
bool isAttestation(const json::value& row)
{
    const json::value* notes = memberOf(row, "annotations");
    return notes != nullptr && !textAt(*notes, "vnd.docker.reference.type").empty();
}

SavedImage imageOf(const json::value& manifest, const std::string& name, const Documents& documents)
{
    SavedImage image;
    if (!name.empty()) {
        image.names.push_back(name);
    }
    const json::value* reference = memberOf(manifest, "config");
    describe(image, reference == nullptr ? json::value() : documentAt(documents, blobOf(*reference)));
    return image;
}

// A list, and the name that its rows have when they have none of their own.
struct NamedList {
    json::value list;
    std::string name;
};

// The list of the OCI layout: its rows lead to lists again, or to what leads to a description. A hostile list leads to
// itself, so no more rows are followed than an archive may have images.
void addOciList(SavedImages& images, const Documents& documents, const json::value& first)
{
    std::deque<NamedList> lists = {{first, {}}};
    for (std::size_t rows = 0; !lists.empty(); lists.pop_front()) {
        const json::array* manifests = listAt(lists.front().list, "manifests");
        for (const json::value& row : manifests == nullptr ? json::array() : *manifests) {
            if (++rows > mostImages) {
                return;
            }
            if (isAttestation(row)) {
                continue;
            }
            const std::string name = nameOf(row).empty() ? lists.front().name : nameOf(row);
            const json::value further = documentAt(documents, blobOf(row));
            if (listAt(further, "manifests") != nullptr) {
                lists.push_back({further, name});
            } else {
                images.all.push_back(imageOf(further, name, documents));
            }
        }
    }
}

} // namespace

SavedImages savedImages(const Documents& documents)
{
    SavedImages images;
    const json::value ociList = documentAt(documents, "index.json");
    images.hasDockerList = addDockerList(images, documents);
    images.hasOciList = listAt(ociList, "manifests") != nullptr;
    if (!images.hasDockerList) {
        addOciList(images, documents, ociList);
    }
    return images;
}

std::string repositoryOf(const std::string& name)
{
    const std::string last = name.substr(name.rfind('/') + 1);
    return last.substr(0, last.find_first_of(":@"));
}

} // namespace kelpctl
