// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Arguments.h>
#include <Roamly/CommandLine/Failures.h>

#include <gtest/gtest.h>

#include <functional>
#include <random>

using CommandLine::Arguments;
using CommandLine::Option;
using CommandLine::Positional;
using CommandLine::UsageError;

namespace {

const std::vector<Option> options{{.name = "--at", .value = "T", .help = "", .repeatable = true},
                                  {.name = "--output", .value = "FILE", .help = "", .shortName = 'o'},
                                  {.name = "--none", .help = ""},
                                  {.name = "--help", .help = "", .shortName = 'h'}};
const std::vector<Positional> many{{.name = "PROJECT", .help = ""},
                                   {.name = "ID", .help = "", .isOptional = true, .isRepeated = true}};

Arguments parse(const std::vector<std::string>& words) {
    return Arguments::parse(words, options, many);
}

std::string refusal(const std::vector<std::string>& words,
                    const std::vector<Positional>& positionals = many) {
    try {
        static_cast<void>(Arguments::parse(words, options, positionals));
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
}

using Words = std::vector<std::string>;

} // namespace

TEST(ArgumentsTest, OptionsAndTheRestComeInAnyOrder) {
    for (const Words& words :
         {Words{"--output", "m.mov", "p", "a", "--none"}, Words{"p", "--none", "a", "-o", "m.mov"},
          Words{"p", "-om.mov", "--none", "a"}, Words{"--none", "p", "a", "--output=m.mov"}}) {
        const Arguments arguments = parse(words);
        EXPECT_EQ(arguments.positionals(), (Words{"p", "a"}));
        EXPECT_EQ(arguments.value("--output"), "m.mov");
        EXPECT_TRUE(arguments.has("--none"));
    }
}

TEST(ArgumentsTest, NegativeNumbersAreValues) {
    const Arguments arguments = parse({"p", "--at", "-1.5", "--at=-2", "-3,4", "-.5"});
    EXPECT_EQ(arguments.values("--at"), (Words{"-1.5", "-2"}));
    EXPECT_EQ(arguments.positionals(), (Words{"p", "-3,4", "-.5"}));
}

TEST(ArgumentsTest, TwoDashesEndTheOptions) {
    EXPECT_EQ(parse({"p", "--", "--none", "-o", "--"}).positionals(), (Words{"p", "--none", "-o", "--"}));
}

TEST(ArgumentsTest, ASingleDashAndAnEmptyTextArePositionals) {
    EXPECT_EQ(parse({"p", "-", ""}).positionals(), (Words{"p", "-", ""}));
}

TEST(ArgumentsTest, AValueMayBeEmptyOrHoldEqualsSigns) {
    EXPECT_EQ(parse({"p", "--output="}).value("--output"), "");
    EXPECT_EQ(parse({"p", "--output", ""}).value("--output"), "");
    EXPECT_EQ(parse({"p", "--output=a=b"}).value("--output"), "a=b");
}

TEST(ArgumentsTest, AValueMayBeginWithADashUnlessItIsAnOption) {
    EXPECT_EQ(parse({"p", "--output", "-x.mov"}).value("--output"), "-x.mov");
    EXPECT_NE(refusal({"p", "--output", "--none"}).find("needs a value"), std::string::npos);
    EXPECT_NE(refusal({"p", "--output", "--"}).find("needs a value"), std::string::npos);
    EXPECT_NE(refusal({"p", "-o"}).find("needs a value"), std::string::npos);
}

TEST(ArgumentsTest, UnknownOptionsAreRefusedWithTheNearestOne) {
    EXPECT_EQ(refusal({"p", "--outptu", "x"}), "There is no option --outptu. Did you mean --output?");
    EXPECT_EQ(refusal({"p", "--zzzzzzzz"}), "There is no option --zzzzzzzz.");
    EXPECT_EQ(refusal({"p", "-x"}), "There is no option -x.");
}

TEST(ArgumentsTest, AFlagTakesNoValue) {
    EXPECT_EQ(refusal({"p", "--none=1"}), "--none takes no value.");
}

TEST(ArgumentsTest, AnOptionGivenTwiceIsRefusedUnlessItMayRepeat) {
    EXPECT_EQ(refusal({"p", "-o", "a", "-o", "b"}), "--output was given more than once.");
    EXPECT_EQ(refusal({"p", "--at", "1", "--at", "2"}), "");
}

TEST(ArgumentsTest, MissingAndSurplusPositionalsAreRefusedByName) {
    EXPECT_EQ(refusal({}), "PROJECT is missing.");
    EXPECT_EQ(refusal({"a", "b"}, {{.name = "FILE", .help = ""}}), "There is one argument too many: “b”.");
    EXPECT_EQ(refusal({"a"}, {{.name = "FILE", .help = ""}, {.name = "ID", .help = "", .isRepeated = true}}),
              "ID is missing.");
}

TEST(ArgumentsTest, HelpIsHeardWhateverElseIsWrongButNotAfterTwoDashes) {
    EXPECT_TRUE(CommandLine::asksForHelp(Words{"--nonsense", "--help"}));
    EXPECT_TRUE(CommandLine::asksForHelp(Words{"-h"}));
    EXPECT_FALSE(CommandLine::asksForHelp(Words{"--", "--help"}));
}

TEST(ArgumentsTest, AnyWordsAreParsedWithoutLossOrRefusedInASentence) {
    const Words pieces{"--at", "--output", "-o", "-o1",    "--none", "--",  "-",
                       "",     "-1",       "x",  "--at=3", "--no",   "-9x", "é"};
    std::mt19937 engine{20240501};
    for (int round = 0; round < 5000; ++round) {
        Words words;
        for (std::size_t count = engine() % 7; count > 0; --count)
            words.push_back(pieces[engine() % pieces.size()]);
        try {
            const Arguments arguments = parse(words);
            const std::size_t kept = arguments.positionals().size() + arguments.values("--at").size() +
                                     arguments.values("--output").size() + arguments.values("--none").size();
            // A value that follows its option takes a word of its own, and so does the first "--".
            EXPECT_LE(kept, words.size());
            EXPECT_GE(2 * kept + 1, words.size());
            EXPECT_GE(arguments.positionals().size(), 1U);
        } catch (const UsageError& error) {
            EXPECT_TRUE(std::string_view{error.what()}.ends_with('.') ||
                        std::string_view{error.what()}.ends_with('?'))
                << error.what();
        }
    }
}
