// What answers mean: each kind, with each code that means anything, to each type of request, in each state.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "modal/answer_rules.h"

using namespace TAVIK::GAME_PLAYER;

namespace {

constexpr AnswerKind RESULT = AnswerKind::RESULT;
constexpr AnswerKind RECEIVE = AnswerKind::RECEIVE;
constexpr AnswerKind ERROR = AnswerKind::ERROR;
constexpr AnswerKind RELEASE = AnswerKind::RELEASE;

using Numbers = std::vector<int32_t>;
const Numbers ANY = {};
const Numbers ALL_BUT_QUICK_GAMES = {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16};
const Numbers TYPES = {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
const Numbers CODES = {-1,     0,          1,          9,          10,         202,       401,
                       100015, 1002000001, 1002000006, 1002000011, 1002000015, 1002000018};

/// The first row that an answer fits tells its effect: (X) the game exits, the event (P)layerChanged or
/// game(A)ddictionPrevented, a (M)essage for JS unless one came before, which closes otherwise, (F)ailure,
/// marks the (E)nd or the (S)tay, (D)ata is kept, a (T)imer may start, (C)loses.
struct Row {
    std::vector<AnswerKind> kinds;
    Numbers codes;
    Numbers types;
    std::string effect;
};

const std::vector<Row> ROWS = {
    {{RESULT, RECEIVE}, {10}, ANY, "X"},
    {{RESULT, RECEIVE}, {1002000011}, {1}, "X"},
    {{RESULT, RECEIVE}, {1002000006}, ALL_BUT_QUICK_GAMES, "X"},
    {{RESULT}, {1002000006}, {14}, "AM"},
    {{RESULT, RECEIVE}, {9}, ANY, "P"},
    {{RECEIVE}, {1002000015}, ANY, "PM"},
    {{RESULT}, {0}, {2, 9}, "ME"},
    {{RESULT}, {0}, {4}, "MD"},
    {{RECEIVE}, {0}, {2, 9, 14}, "MSDT"},
    {{RECEIVE}, {0}, {10}, "MSD"},
    {{RECEIVE}, {0}, {4}, "MD"},
    {{RESULT, RECEIVE}, {0}, ANY, "M"},
    {{RESULT, RECEIVE, ERROR}, ANY, ANY, "MFE"},
    {{RELEASE}, ANY, {2, 9, 10, 13, 14, 15}, "CE"},
    {{RELEASE}, {0}, ANY, ""},
    {{RELEASE}, ANY, ANY, "CE"},
};

template <typename Value>
bool Has(const std::vector<Value>& list, Value value) {
    return list.empty() || std::find(list.begin(), list.end(), value) != list.end();
}

const std::string& EffectOf(AnswerKind kind, int32_t code, int32_t type) {
    auto fits = [&](const Row& row) {
        return Has(row.kinds, kind) && Has(row.codes, code) && Has(row.types, type);
    };
    return std::find_if(ROWS.begin(), ROWS.end(), fits)->effect;
}

std::string Expected(AnswerKind kind, int32_t code, int32_t type, RequestState state) {
    std::string effect = state == RequestState::ENDED ? "" : EffectOf(kind, code, type);
    if (state != RequestState::WAITING) std::replace(effect.begin(), effect.end(), 'M', 'C');
    return effect;
}

std::string Show(const Verdict& verdict) {
    std::string effect;
    for (auto [isSo, letter] : {std::pair{verdict.exits, 'X'},
                                {verdict.event == GameEvent::PLAYER_CHANGED, 'P'},
                                {verdict.event == GameEvent::GAME_ADDICTION_PREVENTED, 'A'},
                                {verdict.settles, 'M'},
                                {verdict.closes, 'C'},
                                {verdict.isFailure, 'F'},
                                {verdict.marksEnd, 'E'},
                                {verdict.marksStay, 'S'},
                                {verdict.stores, 'D'},
                                {verdict.startsTimer, 'T'}}) {
        effect.append(isSo ? 1 : 0, letter);
    }
    return effect;
}

void CheckAll(AnswerKind kind, RequestState state) {
    for (int32_t code : CODES) {
        for (int32_t type : TYPES) {
            EXPECT_EQ(Show(Judge(kind, code, type, state)), Expected(kind, code, type, state))
                << "kind " << static_cast<int>(kind) << ", code " << code << ", type " << type << ", state "
                << static_cast<int>(state);
        }
    }
}

}  // namespace

TEST(AnswerRules, JudgeEveryAnswer) {
    for (AnswerKind kind : {RESULT, RECEIVE, ERROR, RELEASE}) {
        for (RequestState state :
             {RequestState::WAITING, RequestState::ANSWERED, RequestState::OPEN, RequestState::ENDED}) {
            CheckAll(kind, state);
        }
    }
}
