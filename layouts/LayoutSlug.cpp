#include "layouts/LayoutSlug.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>
#include <utility>

#include "platform/foundation/Characters.h"

namespace velto {
namespace {

constexpr std::size_t kLongestSlug = 60;

/// The words of the `velto` command, and those kept free for it.
constexpr std::array<std::string_view, 15> kReservedWords = {
    "layout", "layouts", "completion", "help", "version", "history", "import-safari", "open",
    "save",   "list",    "rename",     "show", "pick",    "names",   "localhost"};

/// Case is folded already, so capitals do not occur.
bool countsInSlug(std::string_view character) {
  if (character.size() != 1) return false;
  const char c = character.front();
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool isFreeWord(std::string_view word) { return !word.empty() && !isReserved(word) && !isPortLike(word); }

std::string rootOf(const std::string& plain) {
  if (plain.empty()) return "layout";
  return isFreeWord(plain) ? plain : plain + "-layout";
}

/// Makes the words for a list. A layout whose word nobody else wants keeps it; the others get theirs by age.
class SlugAssignment {
 public:
  explicit SlugAssignment(const std::vector<Layout>& layouts) {
    wishes_.reserve(layouts.size());
    slugs_.resize(layouts.size());
    for (const Layout& layout : layouts) {
      wishes_.push_back({&layout, wishes_.size(), layoutSlug(layout.name)});
      ++wanted_[wishes_.back().plain];
    }
  }

  std::vector<std::string> make() {
    std::vector<Wish> waiting;
    for (const Wish& wish : wishes_) {
      if (isFreeWord(wish.plain) && wanted_[wish.plain] == 1) {
        give(wish, wish.plain);
      } else {
        waiting.push_back(wish);
      }
    }
    std::stable_sort(waiting.begin(), waiting.end(), [](const Wish& a, const Wish& b) {
      return std::tie(a.layout->createdAt, a.layout->id) < std::tie(b.layout->createdAt, b.layout->id);
    });
    for (const Wish& wish : waiting) give(wish, firstFree(rootOf(wish.plain)));
    return std::move(slugs_);
  }

 private:
  struct Wish {
    const Layout* layout;
    std::size_t position;
    std::string plain;
  };

  void give(const Wish& wish, const std::string& slug) {
    taken_.insert(slug);
    slugs_[wish.position] = slug;
  }

  std::string firstFree(const std::string& root) {
    if (isFreeWord(root) && !taken_.contains(root)) return root;
    // Words are never given back, so the search may go on where it ended for the same root.
    int& number = numbers_.try_emplace(root, 2).first->second;
    for (;; ++number) {
      std::string candidate = root + "-" + std::to_string(number);
      if (isFreeWord(candidate) && !taken_.contains(candidate)) return candidate;
    }
  }

  std::vector<Wish> wishes_;
  std::map<std::string, int> wanted_;
  std::map<std::string, int> numbers_;
  std::set<std::string> taken_;
  std::vector<std::string> slugs_;
};

}  // namespace

std::string layoutSlug(std::string_view name) {
  std::string slug;
  bool hyphenPending = false;
  const std::string folded = foldCaseAndMarks(name);
  for (const std::string_view character : characters(folded)) {
    if (!countsInSlug(character)) {
      hyphenPending = !slug.empty();
      continue;
    }
    if (slug.size() + 1 + (hyphenPending ? 1 : 0) > kLongestSlug) break;
    if (hyphenPending) slug += '-';
    slug += character;
    hyphenPending = false;
  }
  return slug;
}

std::vector<std::string> slugsOf(const std::vector<Layout>& layouts) {
  return SlugAssignment(layouts).make();
}

std::map<std::string, std::string> slugTable(const std::vector<Layout>& layouts) {
  std::vector<std::string> slugs = slugsOf(layouts);
  std::map<std::string, std::string> table;
  for (std::size_t i = 0; i < layouts.size(); ++i) table.try_emplace(layouts[i].id, std::move(slugs[i]));
  return table;
}

std::optional<std::string> slugExplanation(std::string_view name, std::string_view slug) {
  const std::string plain = layoutSlug(name);
  if (plain == slug) return std::nullopt;
  const std::string quotedPlain = "“" + plain + "”";
  const std::string quotedSlug = "“" + std::string(slug) + "”.";
  if (isFreeWord(plain)) {
    return "Another layout already answers to " + quotedPlain + ", so this one's command is " + quotedSlug;
  }
  if (!plain.empty() && isPortLike(plain)) {
    return quotedPlain + " would be read as a port number, so this layout's command is " + quotedSlug;
  }
  return quotedPlain + " is a word the velto command already uses, so this layout's command is " + quotedSlug;
}

bool isReserved(std::string_view word) {
  return std::find(kReservedWords.begin(), kReservedWords.end(), word) != kReservedWords.end();
}

bool isPortLike(std::string_view word) {
  const auto all = characters(word);
  return std::all_of(all.begin(), all.end(), isNumber);
}

}  // namespace velto
