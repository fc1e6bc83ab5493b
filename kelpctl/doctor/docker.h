// Docker, as found on this computer.
#pragma once

#include "asking/docker.h"
#include "doctor/candidate.h"
#include "request/context.h"

#include <string>
#include <vector>

namespace kelpctl {

struct DockerImage {
    std::string repository;
    std::string tag;
    std::string id;
    std::string size;

    // The repository without registry and path; the library compares nothing else.
    std::string name() const { return repository.substr(repository.rfind('/') + 1); }
};

struct DockerContainer {
    std::string name;
    std::string image;
    // Docker's words, which are the same in every language: "running" and "Up 3 minutes".
    std::string state;
    std::string status;
};

struct DockerExamination {
    Run lookUp;
    std::vector<Candidate> candidates;
    // What the library uses, empty when the look-up found nothing. All that the look-up printed when no candidate is fit.
    std::string client;
    // Whether there is something of that name; the library asks this before it provisions.
    bool clientExists = false;
    // What ended the search, empty when nothing did.
    std::string searchFailure;
    // By "docker version"; the rest is not asked when it fails.
    DockerEngine engine;
    Run imageListing;
    std::vector<DockerImage> images;
    Run containerListing;
    std::vector<DockerContainer> containers;
};

// By the library's rules for the client, and by asking that client.
DockerExamination examineDocker(const Context& context);

} // namespace kelpctl
