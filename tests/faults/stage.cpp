#include "stage.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace faults {
namespace {

#ifdef _WIN32
constexpr char lookupSuffix[] = ".exe";
#else
constexpr char lookupSuffix[] = "";
#endif
constexpr char putAside[] = ".away";

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void write(const std::filesystem::path& file, const std::string& content)
{
    std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
}

std::filesystem::path withEnding(std::filesystem::path path, const char* ending)
{
    path += ending;
    return path;
}

std::filesystem::path callFile(const Stage& stage, int number)
{
    return stage.play() / ("call-" + std::to_string(number));
}

} // namespace

Stage Stage::around(const std::filesystem::path& program)
{
    std::filesystem::path root = program.parent_path();
    while (!std::filesystem::exists(root / "play")) {
        root = root.parent_path();
    }
    return Stage(root);
}

std::string Stage::nameOfProgram(const std::filesystem::path& program) const
{
    const std::string stem = program.stem().string();
    return stem == "where" || stem == "which" ? stem : program.lexically_relative(programs()).generic_string();
}

std::filesystem::path Stage::program(const std::string& name) const
{
    return programs() / (name.ends_with(".exe") ? name : name + lookupSuffix);
}

void Stage::build(const std::filesystem::path& player, const std::vector<std::string>& names, const State& state) const
{
    for (const std::filesystem::path& folder : {programs(), play(), temporary()}) {
        std::filesystem::create_directories(folder);
    }
    std::vector<std::string> all = names;
    all.insert(all.end(), state.candidates.begin(), state.candidates.end());
    for (const std::string& name : all) {
        if (entryOf(name) == Entry::folder) {
            std::filesystem::create_directories(program(name));
        } else if (entryOf(name) == Entry::program && !std::filesystem::exists(program(name))) {
            std::filesystem::create_directories(program(name).parent_path());
            std::filesystem::copy_file(player, program(name));
        }
    }
    saveState(state, this->state());
}

void Stage::rewind(const StagedPlan& plan) const
{
    for (int number = 1; std::filesystem::remove(callFile(*this, number)); ++number) {
    }
    for (const char* file : {"hanging", "released", "helper"}) {
        std::filesystem::remove(play() / file);
    }
    for (const char* name : {"where", "which", "wsl.exe", "docker.exe", oldWsl}) {
        const std::filesystem::path aside = withEnding(program(name), putAside);
        if (std::filesystem::exists(aside)) {
            std::filesystem::remove(program(name));
            std::filesystem::rename(aside, program(name));
        }
    }
    write(play() / "plan", std::string(nameOf(plan.fault)) + " " + std::to_string(plan.call) + " " + plan.program);
    if (plan.call == 1) {
        spoil(plan);
    }
}

StagedPlan Stage::plan() const
{
    StagedPlan plan;
    std::string fault;
    std::istringstream(contentOf(play() / "plan")) >> fault >> plan.call >> plan.program;
    plan.fault = faultNamed(fault);
    return plan;
}

long long Stage::host() const
{
    return std::stoll(contentOf(play() / "host"));
}

void Stage::setHost(long long process) const
{
    write(play() / "host", std::to_string(process));
}

std::string Stage::shownFolder() const
{
    std::filesystem::path folder = programs() / "";
    return folder.make_preferred().string();
}

int Stage::recordCall(long long process, const std::vector<std::string>& command) const
{
    int number = 1;
    while (std::filesystem::exists(callFile(*this, number))) {
        ++number;
    }
    std::string content = std::to_string(process) + '\0';
    for (const std::string& argument : command) {
        content += argument + '\0';
    }
    write(callFile(*this, number), content);
    return number;
}

void Stage::recordHelper(long long process) const
{
    write(play() / "helper", std::to_string(process));
}

namespace {

std::vector<std::string> fieldsOf(const std::string& content)
{
    std::istringstream stream(content);
    std::vector<std::string> fields;
    for (std::string field; std::getline(stream, field, '\0');) {
        fields.push_back(field);
    }
    return fields;
}

} // namespace

std::vector<std::vector<std::string>> Stage::calls() const
{
    std::vector<std::vector<std::string>> all;
    for (int number = 1; std::filesystem::exists(callFile(*this, number)); ++number) {
        std::vector<std::string> fields = fieldsOf(contentOf(callFile(*this, number)));
        fields.erase(fields.begin());
        all.push_back(fields);
    }
    return all;
}

std::vector<long long> Stage::processes() const
{
    std::vector<long long> all;
    for (int number = 1; std::filesystem::exists(callFile(*this, number)); ++number) {
        all.push_back(std::stoll(fieldsOf(contentOf(callFile(*this, number))).front()));
    }
    return all;
}

long long Stage::helper() const
{
    const std::string content = contentOf(play() / "helper");
    return content.empty() ? 0 : std::stoll(content);
}

void Stage::spoil(const StagedPlan& plan) const
{
    if (plan.fault != Fault::missing && plan.fault != Fault::unstartable) {
        return;
    }
    const std::filesystem::path file = program(plan.program);
    std::filesystem::rename(file, withEnding(file, putAside));
    if (plan.fault == Fault::unstartable) {
        write(file, "this is no program\n");
        std::filesystem::permissions(file, std::filesystem::perms::all);
    }
}

} // namespace faults
