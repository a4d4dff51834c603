// Feeds a fuzz target the files of its corpus and random changes of them. The changes are the same in every
// run, so that what fails can be found again; -runs=N says how many, -seed=N which.
#include "target.h"

#include <csignal>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Options {
    unsigned long runs = 10000;
    unsigned long seed = 1;
    std::vector<Bytes> corpus;
};

Bytes readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

Options parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with("-runs="))
            options.runs = std::stoul(argv[i] + 6);
        else if (argument.starts_with("-seed="))
            options.seed = std::stoul(argv[i] + 6);
        else if (std::filesystem::is_directory(argument))
            for (const auto& file : std::filesystem::directory_iterator(argument))
                options.corpus.push_back(readFile(file.path()));
        else
            options.corpus.push_back(readFile(argument));
    }
    options.corpus.emplace_back();
    return options;
}

class Mutator {
public:
    explicit Mutator(const Options& options) : corpus_(options.corpus), random_(options.seed) {}

    Bytes next() {
        Bytes bytes = pick(corpus_);
        for (unsigned changes = 1 + below(4); changes > 0; --changes)
            change(bytes);
        return bytes;
    }

private:
    unsigned below(std::size_t limit) {
        return static_cast<unsigned>(std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_));
    }
    const Bytes& pick(const std::vector<Bytes>& from) { return from[below(from.size())]; }

    void change(Bytes& bytes) {
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size() + 1));
        const Bytes& other = pick(corpus_);
        switch (below(6)) {
        case 0: // another byte
            if (place != bytes.end())
                *place = static_cast<std::uint8_t>(below(256));
            break;
        case 1: // another bit
            if (place != bytes.end())
                *place = static_cast<std::uint8_t>(*place ^ 1U << below(8));
            break;
        case 2: // a byte more
            bytes.insert(place, static_cast<std::uint8_t>(below(256)));
            break;
        case 3: // an end
            bytes.erase(place, bytes.end());
            break;
        case 4: // a part of another input
            if (!other.empty()) {
                const std::size_t start = below(other.size());
                const std::size_t length = 1 + below(other.size() - start);
                const Bytes part(other.data() + start, other.data() + start + length);
                bytes.insert(place, part.begin(), part.end());
            }
            break;
        default: // a byte many times
            bytes.insert(place, below(600), static_cast<std::uint8_t>(below(256)));
        }
    }

    const std::vector<Bytes>& corpus_;
    std::mt19937_64 random_;
};

std::span<const std::uint8_t> input;

// Keeps the input that ended the program, in the folder that it runs in.
void keepInput(int signal) {
    const int file = open("crash-input", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    constexpr char message[] = "the input is in crash-input\n";
    if (file >= 0 && write(file, input.data(), input.size()) >= 0)
        (void)!write(STDERR_FILENO, message, sizeof message - 1);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void feed(const Bytes& bytes) {
    // An allocation of its own size: the sanitizer sees what reads beyond it.
    const std::vector<std::uint8_t> exact(bytes);
    input = exact;
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

} // namespace

int main(int argc, char** argv) {
    for (const int signal : {SIGABRT, SIGSEGV, SIGFPE})
        std::signal(signal, keepInput);
    try {
        const Options options = parse(argc, argv);
        for (const Bytes& bytes : options.corpus)
            feed(bytes);
        Mutator mutator(options);
        for (unsigned long run = 0; run < options.runs; ++run)
            feed(mutator.next());
        std::cout << options.corpus.size() << " inputs, " << options.runs << " changes of them\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
