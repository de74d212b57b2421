# Sourced by scripts/test.sh: a private PulseAudio server whose default source is a test
# microphone that hears a steady 440 Hz tone, and whose default sink is a null sink.
# Qt lists no monitor source as an input, so the microphone is a remap of the feed sink's monitor.
cq_audio_start() {
    export XDG_RUNTIME_DIR="${CQ_TEST_RUNTIME_DIR:-$(mktemp -d /tmp/clipquill-test-XXXXXX)}"
    chmod 700 "$XDG_RUNTIME_DIR"
    unset PULSE_SERVER
    pulseaudio --daemonize=yes --exit-idle-time=-1 -n \
        --load="module-native-protocol-unix" \
        --load="module-null-sink sink_name=speakers" \
        --load="module-null-sink sink_name=micfeed" \
        --load="module-remap-source source_name=testmic master=micfeed.monitor" \
        --log-target=file:"$XDG_RUNTIME_DIR/pulse.log" 2>/dev/null || true
    for _ in $(seq 50); do pactl info >/dev/null 2>&1 && break; sleep 0.1; done
    if ! pactl info >/dev/null 2>&1; then
        echo "warning: no PulseAudio server; audio tests will be skipped" >&2
        return 0
    fi
    pactl set-default-sink speakers
    pactl set-default-source testmic
    # The feed keeps a quarter of a second queued at the server: with the tests running two at a
    # time, a feeder that waits for the processor must not leave the microphone silent.
    ( ffmpeg -hide_banner -loglevel error -re -f lavfi -i "sine=frequency=440:sample_rate=44100" \
        -f s16le -ac 1 -ar 44100 - | pacat -d micfeed --latency-msec=250 --raw --format=s16le --rate=44100 --channels=1 ) \
        >/dev/null 2>&1 &
    CQ_FEEDER_PID=$!
    # The first recording stream of a fresh server waits ~1.5 s for its first sound; take
    # that wait here so the tests measure the program, not the server's start.
    timeout 2.5 parec -d testmic --raw >/dev/null 2>&1 || true
    export CLIPQUILL_TEST_AUDIO=1
}

cq_audio_stop() {
    [[ -n "${CQ_FEEDER_PID:-}" ]] && pkill -P "$CQ_FEEDER_PID" 2>/dev/null
    [[ -n "${CQ_FEEDER_PID:-}" ]] && kill "$CQ_FEEDER_PID" 2>/dev/null
    pulseaudio --kill 2>/dev/null || true
}
