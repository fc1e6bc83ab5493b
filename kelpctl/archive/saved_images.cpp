#include "archive/saved_images.h"

#include "terminal/json.h"
#include "terminal/text.h"

#include <algorithm>

namespace kelpctl {
namespace {

namespace json = boost::json;

// Lists may stand in lists; nobody nests them deeper.
constexpr int deepestList = 4;
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

// The list of the OCI layout: its rows lead to lists again, or to what leads to a description.
void addOciList(SavedImages& images, const Documents& documents, const json::value& list, const std::string& nameAbove,
                int depth)
{
    const json::array* rows = listAt(list, "manifests");
    if (rows == nullptr || depth > deepestList) {
        return;
    }
    for (const json::value& row : *rows) {
        const std::string name = nameOf(row).empty() ? nameAbove : nameOf(row);
        const json::value further = documentAt(documents, blobOf(row));
        if (listAt(further, "manifests") != nullptr) {
            addOciList(images, documents, further, name, depth + 1);
            continue;
        }
        SavedImage image;
        if (!name.empty()) {
            image.names.push_back(name);
        }
        const json::value* reference = memberOf(further, "config");
        describe(image, reference == nullptr ? json::value() : documentAt(documents, blobOf(*reference)));
        if (images.all.size() < mostImages) {
            images.all.push_back(image);
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
        addOciList(images, documents, ociList, {}, 0);
    }
    return images;
}

std::string repositoryOf(const std::string& name)
{
    const std::string last = name.substr(name.rfind('/') + 1);
    return last.substr(0, last.find_first_of(":@"));
}

} // namespace kelpctl
