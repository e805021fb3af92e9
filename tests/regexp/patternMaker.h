// Makes patterns from their grammar, so that most are valid, and short texts for them. The same seed makes
// the same ones.
#pragma once

#include <random>
#include <span>
#include <string>
#include <string_view>

namespace vellums::tests {

// What is chosen from, and how often.
struct PatternChoices {
    std::u16string_view letters; // of the texts
    std::span<const std::u16string_view> quantifiers;
    unsigned usualQuantifiers; // so many of them, from the front, are taken more often
    unsigned rareOdds;         // one time in so many any of them is taken
    unsigned assertionOdds;    // one term in so many is an assertion
};

class PatternMaker {
public:
    PatternMaker(unsigned seed, const PatternChoices& choices)
        : random_(seed)
        , choices_(choices)
    {
    }
    virtual ~PatternMaker() = default;

    std::u16string pattern(int depth)
    {
        std::u16string result = sequence(depth);
        while (below(5) == 0)
            result += u"|" + sequence(depth);
        return result;
    }

    std::u16string text()
    {
        std::u16string result;
        for (unsigned i = below(14); i > 0; --i)
            result += choices_.letters[below(static_cast<unsigned>(choices_.letters.size()))];
        return result;
    }

    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

protected:
    // A group, a back reference or a single character.
    virtual std::u16string atom(int depth) = 0;

private:
    std::u16string sequence(int depth)
    {
        std::u16string result;
        for (unsigned i = below(4); i > 0; --i)
            result += term(depth);
        return result;
    }

    std::u16string term(int depth)
    {
        const std::u16string_view assertions[] = {u"^", u"$", u"\\b", u"\\B"};
        if (below(choices_.assertionOdds) == 0)
            return std::u16string(assertions[below(4)]);
        std::u16string result = atom(depth);
        if (below(3) == 0) {
            const bool any = below(choices_.rareOdds) == 0;
            const auto all = static_cast<unsigned>(choices_.quantifiers.size());
            result += choices_.quantifiers[below(any ? all : choices_.usualQuantifiers)];
        }
        return result;
    }

    std::mt19937 random_;
    const PatternChoices& choices_;
};

} // namespace vellums::tests
