#!/usr/bin/env bash
# Times "tonebench-cli convert" against the reference tools (sox, lame,
# mpg123, oggenc, oggdec, flac, ffmpeg) on the same files and prints, for
# each job, the median of the runs of each side (run in turn, ours then the
# reference, three each) and the ratio ours / reference; then the peak
# resident memory of ours on a one-hour file. Builds its own release tree in
# build/bench and makes its own audio in $BENCH_DIR (default
# "tonebench-bench" in $TMPDIR or /tmp), once; the one-hour file takes about
# 600 MB there.
#
#   bench/convert-vs-reference.sh            all jobs and the memory figure
#   RUNS=5 bench/convert-vs-reference.sh     more runs per side
#   JOBS="mp3|ogg" bench/convert-vs-reference.sh   only the rows whose name matches (a regular expression)
#
# Each job is one "row" line below: a new codec adds its rows.
set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="$ROOT/build/bench"
BENCH_DIR="${BENCH_DIR:-${TMPDIR:-/tmp}/tonebench-bench}"
RUNS="${RUNS:-3}"
CLI="$BUILD/app/tonebench-cli"
IN="$BENCH_DIR/in"
OUT="$BENCH_DIR/out"

JOBS="${JOBS:-}"

for tool in sox lame mpg123 oggenc oggdec flac ffmpeg cmake ninja cc awk; do
    command -v "$tool" > /dev/null || { echo "convert-vs-reference: '$tool' is needed" >&2; exit 2; }
done

echo "Building tonebench-cli (Release) in $BUILD ..."
mkdir -p "$BUILD"
launcher=()
command -v ccache > /dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S "$ROOT" -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTB_BUILD_TESTS=OFF "${launcher[@]}" \
    > "$BUILD/cmake.log" 2>&1 ||
    { cat "$BUILD/cmake.log" >&2; exit 1; }
cmake --build "$BUILD" --target tonebench-cli > "$BUILD/build.log" 2>&1 || { tail -40 "$BUILD/build.log" >&2; exit 1; }

# make_input NAME SECONDS OUTPUT-OPTIONS... : a two-tone signal, made once.
make_input() {
    local name="$1" length="$2"
    shift 2
    [ -s "$IN/$name" ] && return
    echo "Making $name ($length s) ..."
    sox -n "$@" "$IN/$name.part.wav" synth "$length" sine 440 sine 660 vol 0.5 2> /dev/null
    mv "$IN/$name.part.wav" "$IN/$name"
}
mkdir -p "$IN"
make_input stereo44.wav 600 -r 44100 -c 2 -b 16
make_input stereo48.wav 600 -r 48000 -c 2 -b 16
make_input pcm8.wav 600 -r 44100 -c 2 -b 8
make_input adpcm.wav 600 -r 44100 -c 2 -e ima-adpcm -b 4
make_input hour.wav 3600 -r 44100 -c 2 -b 16
make_input music.wav 180 -r 44100 -c 2 -b 16
make_input long.wav 1800 -r 44100 -c 2 -b 16

# make_encoded NAME COMMAND...: a compressed input made once from music.wav
# by a reference encoder; @IN@ and @OUT@ in the command are replaced.
make_encoded() {
    local name="$1"
    shift
    [ -s "$IN/$name" ] && return
    echo "Making $name ..."
    local arguments=("${@//@IN@/$IN/music.wav}")
    arguments=("${arguments[@]//@LONG@/$IN/long.wav}")
    arguments=("${arguments[@]//@OUT@/$IN/part-$name}")
    "${arguments[@]}" > /dev/null 2>&1
    mv "$IN/part-$name" "$IN/$name"
}
make_encoded music.mp3 lame --quiet --abr 160 @IN@ @OUT@
make_encoded music.ogg oggenc -Q -q 5 -o @OUT@ @IN@
make_encoded music.flac flac -5 -s -o @OUT@ @IN@
make_encoded long.ogg oggenc -Q -q 5 -o @OUT@ @LONG@
make_encoded long.flac flac -5 -s -o @OUT@ @LONG@
make_encoded music.wma ffmpeg -v error -i @IN@ -c:a wmav2 -b:a 160k -f asf @OUT@

# seconds COMMAND... : runs it with its output thrown away and prints the
# wall-clock time, or "failed".
seconds() {
    local start end
    start=$(date +%s.%N)
    "$@" > /dev/null 2>&1 || { echo failed; return; }
    end=$(date +%s.%N)
    awk -v start="$start" -v end="$end" 'BEGIN { printf "%.3f\n", end - start }'
}

median() { printf '%s\n' "$@" | sort -g | sed -n "$((($# + 1) / 2))p"; }

printf '\n%-28s %10s %10s %8s  %s\n' "job" "ours (s)" "ref. (s)" "ratio" "reference"

# row NAME INPUT EXTENSION "OURS-OPTIONS" REFERENCE-COMMAND...
# Ours writes $OUT/ours/<input name with EXTENSION>; the reference command
# reads @IN@ and writes @OUT@ ($OUT/reference.EXTENSION). Both start from an
# empty folder each time.
row() {
    local name="$1" input="$IN/$2" extension="$3" ours_options="$4"
    shift 4
    [ -n "$JOBS" ] && ! grep -Eqi -- "$JOBS" <<< "$name" && return
    local reference_command=("${@//@IN@/$input}")
    reference_command=("${reference_command[@]//@OUT@/$OUT/reference.$extension}")
    local ours_output
    ours_output="$OUT/ours/$(basename "${input%.*}").$extension"
    local ours=() reference=() run time
    for ((run = 0; run < RUNS; ++run)); do
        rm -rf "$OUT" && mkdir -p "$OUT/ours"
        # shellcheck disable=SC2086
        time=$(seconds "$CLI" convert $ours_options --exists overwrite --dest "$OUT/ours" "$input")
        [ -s "$ours_output" ] || time=failed
        ours+=("$time")
        rm -rf "$OUT" && mkdir -p "$OUT"
        time=$(seconds "${reference_command[@]}")
        [ -s "$OUT/reference.$extension" ] || time=failed
        reference+=("$time")
    done
    rm -rf "$OUT"
    if printf '%s\n' "${ours[@]}" "${reference[@]}" | grep -q failed; then
        printf '%-28s %10s %10s %8s  %s\n' "$name" "${ours[0]}" "${reference[0]}" "-" "$1"
        return
    fi
    local ours_median reference_median
    ours_median=$(median "${ours[@]}")
    reference_median=$(median "${reference[@]}")
    printf '%-28s %10.3f %10.3f %8.2f  %s\n' "$name" "$ours_median" "$reference_median" \
        "$(awk -v a="$ours_median" -v b="$reference_median" 'BEGIN { printf "%.4f\n", a / b }')" "$1"
}

PCM16="--to wav --quality 5 --set sampleRate=44100 --set channels=2 --set bitsPerSample=16"
row "WAV copy (10 min)" stereo44.wav wav "--to wav" sox @IN@ @OUT@
row "48000 -> 44100 Hz" stereo48.wav wav "$PCM16" sox @IN@ -r 44100 @OUT@ rate -q
row "WAV 8-bit decode" pcm8.wav wav "$PCM16" sox @IN@ -b 16 @OUT@
row "IMA ADPCM decode" adpcm.wav wav "$PCM16" sox @IN@ -e signed -b 16 @OUT@
# The MP3 presets are ABR: CD 160 kBit/s, good 128 kBit/s.
row "WAV -> MP3 CD (3 min)" music.wav mp3 "--to mp3 --quality 1" lame --quiet --abr 160 @IN@ @OUT@
row "WAV -> MP3 good (3 min)" music.wav mp3 "--to mp3 --quality 2" lame --quiet --abr 128 @IN@ @OUT@
row "MP3 -> WAV (3 min)" music.mp3 wav "$PCM16" mpg123 -q -w @OUT@ @IN@
# The Ogg CD preset is quality index 5 at 44100 Hz, which is oggenc -q 5.
row "WAV -> Ogg CD (3 min)" music.wav ogg "--to ogg --quality 1" oggenc -Q -q 5 -o @OUT@ @IN@
row "Ogg -> WAV (3 min)" music.ogg wav "$PCM16" oggdec -Q -o @OUT@ @IN@
# A start of ours costs about 45 ms more than a reference tool's (the
# dynamic loader maps some 160 libraries that FFmpeg and SDL bring), which
# weighs on a three-minute file; the 30-minute rows show the codec work.
row "Ogg -> WAV (30 min)" long.ogg wav "$PCM16" oggdec -Q -o @OUT@ @IN@
row "WAV -> FLAC CD (3 min)" music.wav flac "--to flac --quality 1" flac -5 -s -f -o @OUT@ @IN@
row "FLAC -> WAV (3 min)" music.flac wav "$PCM16" flac -d -s -f -o @OUT@ @IN@
row "FLAC -> WAV (30 min)" long.flac wav "$PCM16" flac -d -s -f -o @OUT@ @IN@
# The WMA CD preset's quality 0.78 takes wmav2 at 160 kBit/s.
row "WAV -> WMA CD (3 min)" music.wav wma "--to wma --quality 1" \
    ffmpeg -v error -y -i @IN@ -c:a wmav2 -b:a 160k -f asf @OUT@
row "WMA -> WAV (3 min)" music.wma wav "$PCM16" ffmpeg -v error -y -i @IN@ -c:a pcm_s16le @OUT@

[ -n "$JOBS" ] && exit 0

# Peak resident memory of ours on the one-hour file: GNU time where it is
# installed, else a small getrusage wrapper built here.
report="$BENCH_DIR/peak-rss.txt"
rm -f "$report"
rm -rf "$OUT" && mkdir -p "$OUT/ours"
hour=("$CLI" convert --to wav --exists overwrite --dest "$OUT/ours" "$IN/hour.wav")
if [ -x /usr/bin/time ] && /usr/bin/time -v true > /dev/null 2>&1; then
    measured_with="GNU time -v"
    /usr/bin/time -v -o "$report" "${hour[@]}" > /dev/null 2>&1 || true
    rss=$(sed -n 's/.*Maximum resident set size (kbytes): //p' "$report")
else
    measured_with="getrusage wrapper"
    wrapper="$BUILD/peak-rss"
    cat > "$wrapper.c" << 'WRAPPER'
#include <stdio.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
/* peak-rss FILE COMMAND...: runs the command and writes its peak resident
   set in KiB to FILE; exits with the command's status. */
int main(int argc, char** argv)
{
    if (argc < 3) return 2;
    pid_t child = fork();
    if (child == 0) {
        execvp(argv[2], argv + 2);
        _exit(127);
    }
    int status = 0;
    struct rusage usage;
    if (child < 0 || wait4(child, &status, 0, &usage) != child) return 1;
    FILE* out = fopen(argv[1], "w");
    if (out == NULL) return 1;
    fprintf(out, "%ld\n", usage.ru_maxrss);
    fclose(out);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
WRAPPER
    cc -O2 -o "$wrapper" "$wrapper.c"
    "$wrapper" "$report" "${hour[@]}" > /dev/null 2>&1 || true
    rss=$(cat "$report" 2> /dev/null || true)
fi
if [ -s "$OUT/ours/hour.wav" ]; then
    printf '\nPeak RSS of ours, WAV copy of a one-hour file (%s): %s KiB\n' "$measured_with" "$rss"
else
    printf '\nPeak RSS of ours, WAV copy of a one-hour file: the conversion failed\n'
fi
rm -rf "$OUT"
