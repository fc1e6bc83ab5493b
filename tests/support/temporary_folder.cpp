#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <string>
#include <system_error>

TemporaryFolder::TemporaryFolder()
    : path_(std::filesystem::canonical(std::filesystem::temp_directory_path()) /
            ("zqorb-test-" + std::to_string(std::random_device{}()) + "-" + std::to_string(std::random_device{}())))
{
    std::filesystem::create_directory(path_);
}

TemporaryFolder::~TemporaryFolder()
{
    if (testing::Test::HasFailure()) {
        std::cerr << "left for inspection: " << path_.string() << '\n';
        return;
    }
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}
