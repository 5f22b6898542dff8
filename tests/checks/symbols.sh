#!/usr/bin/env bash
# usage: symbols.sh LIBRARY
# The library's symbol table holds what its users link and Qt's plug-in entries. Everything else of ours is hidden.
set -euo pipefail

perl -w - "$1" <<'PERL'
my $library = shift;
my @classes = qw(ManualT0Logic OrderQueuePanel ManualT0DoubleSpinbox ManualT0TraderCombo);
my $api = join '|', @classes, 'SymbolListType'; # that one is a struct, it need not have a symbol
my $foreign = qr/(?:std::|__gnu_cxx::|Q[A-Za-z0-9]*\b|q[A-Z]\w*\b|operator)/;

open(my $table, '-|', 'nm', '-D', '--defined-only', '-C', $library) or die "nm: $!\n";
my (%symbols_of, @faults);
while (my $line = <$table>) {
    chomp $line;
    my ($type, $name) = $line =~ /^[0-9a-f]*\s*(\S) (.*)$/ or next;
    next if $name =~ /^(?:__bss_start|_edata|_end)$/; # the linker's, exported because Qt's libraries have them too
    next if $type eq 'A' || $name =~ /^qt_plugin_(?:instance|query_metadata)\b/;

    # The entity itself: without arguments, template arguments and a template's return type.
    (my $entity = $name) =~ s/operator\s*[<>=!\-+*()\[\]]+/operator/g;
    1 while $entity =~ s/<[^<>]*>//g;
    1 while $entity =~ s/\((?!anonymous)[^()]*\)(?: const)?//g;
    $entity =~ s/^(?:vtable|VTT|typeinfo(?: name)?|guard variable|non-virtual thunk) (?:for|to) //;
    $entity =~ s/\[abi:\w+\]//g;

    if ($entity =~ /(?:^|\s)($api)(?:::|$)/) { ++$symbols_of{$1}; next }
    next if $type =~ /^[VWu]$/ && $entity =~ /(?:^|\s)$foreign/;
    push @faults, "  $type $name";
}
close($table) or die "nm cannot read $library\n";
die "$library exports what is not part of its interface:\n" . join("\n", @faults) . "\n" if @faults;
for my $class (@classes) {
    die "$library exports nothing of $class\n" unless $symbols_of{$class};
    print "$class: $symbols_of{$class} symbols\n";
}
PERL
