#include "doctor.h"

#include "doctor_json.h"
#include "doctor_table.h"
#include "errors.h"
#include "examination.h"
#include "verdict.h"
#include "work.h"

namespace kelpctl {

Outcome doctor(const Context& context)
{
    Examination found;
    work(context, [&] { found = examine(context); });
    const Judgement judgement = judge(found);
    const Names names = namesOf(context.request);
    Outcome outcome;
    outcome.lines = doctorTable(found, judgement, names, context.console.outColours);
    outcome.result = doctorObject(found, judgement, names);
    if (judgement.verdict == Verdict::blocked) {
        outcome.failure = reportOf(Failure("DOCTOR_FOUND_PROBLEMS"), {}, std::nullopt, context.request);
    }
    return outcome;
}

} // namespace kelpctl
