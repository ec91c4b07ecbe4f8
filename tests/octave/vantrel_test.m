% Values of Octave through the MATLAB adapter: in, the tree, out. Each is compared with what is expected of it, computed here.
%
%     octave --path FOLDER_OF_VANTREL_MEX vantrel_test.m
%
% Prints "N passed, M failed" and ends with 1 when something failed or nothing ran.
1;

global passed failed
passed = 0;
failed = 0;
max_recursion_depth (5000);

function note (ok, name, detail)
  global passed failed
  if (ok)
    passed += 1;
  else
    failed += 1;
    printf ("FAILED %s: %s\n", name, detail);
  endif
endfunction

% --- what is expected ---

function text = why_refused (value)
  % The message of the first thing in an array that the editor cannot take; empty when there is none.
  text = "";
  if (issparse (value))
    text = "Array is sparse";
  elseif (isstruct (value))
    names = fieldnames (value);
    for e = 1:numel (value)
      for f = 1:numel (names)
        text = why_refused (value(e).(names{f}));
        if (! isempty (text)) return; endif
      endfor
    endfor
  elseif (iscell (value))
    for e = 1:numel (value)
      text = why_refused (value{e});
      if (! isempty (text)) return; endif
    endfor
  elseif (isa (value, "uint64"))
    text = "Array contains an unsigned 64 bit integer";
  elseif (is_function_handle (value))
    text = "Array contains a function handle";
  elseif (isfloat (value) && ! iscomplex (value))
    special = find (! isfinite (value(:)), 1);
    if (! isempty (special))
      if (isnan (value(special)))
        text = "Array contains a NAN value";
      else
        text = "Array contains an infinite value";
      endif
    endif
  endif
endfunction

function result = narrow (value)
  % The narrowest class that holds the values, as documented.
  if (iscell (value))
    result = cellfun (@narrow, value, "UniformOutput", false);
  elseif (isstruct (value))
    result = value;
    names = fieldnames (value);
    if (isempty (value) || isempty (names))
      result = without_fields (size (value));
      return;
    endif
    for e = 1:numel (value)
      for f = 1:numel (names)
        result(e).(names{f}) = narrow (value(e).(names{f}));
      endfor
    endfor
  elseif (ischar (value) || islogical (value))
    result = value;
    if (ischar (value)) result = char (result); endif
  elseif (isempty (value))
    result = false (size (value));
  elseif (iscomplex (value) && any (imag (value(:)) != 0))
    result = complex (double (real (value)), double (imag (value)));
  else
    result = narrow_reals (real (full (value)));
  endif
endfunction

function result = narrow_reals (value)
  if (all (value(:) == 0 | value(:) == 1))
    result = logical (value);
  elseif (isinteger (value) || all (fix (value(:)) == value(:) & abs (value(:)) <= 2^63))
    if (all (value(:) >= -2147483648 & value(:) <= 2147483647))
      result = int32 (value);
    else
      result = int64 (value);
    endif
  else
    result = double (value);
  endif
endfunction

function result = without_fields (lengths)
  result = rmfield (struct ("x", cell (lengths)), "x");
endfunction

function same = same_value (a, b)
  same = strcmp (class (a), class (b)) && isequal (size (a), size (b));
  if (! same) return; endif
  if (iscell (a))
    for e = 1:numel (a)
      same = same && same_value (a{e}, b{e});
    endfor
  elseif (isstruct (a))
    same = isequal (fieldnames (a), fieldnames (b));
    names = fieldnames (a);
    for e = 1:numel (a)
      for f = 1:numel (names)
        same = same && same_value (a(e).(names{f}), b(e).(names{f}));
      endfor
    endfor
  else
    same = iscomplex (a) == iscomplex (b) && isequaln (a, b);
  endif
endfunction

function text = shape_text (lengths)
  text = ["[" strtrim(sprintf("%d ", lengths)) "]"];
endfunction

function items = by_rows (value)
  % The items with the last axis fastest.
  items = permute (value, ndims (value):-1:1)(:);
endfunction

function text = item_text (format, items)
  % A blank and the format for each item. The C library's own spelling of what is not finite.
  text = "";
  if (! isempty (items)) text = sprintf ([" " format], items); endif
  text = strrep (strrep (text, "NaN", "nan"), "Inf", "inf");
endfunction

function message = message_of (err)
  % Octave puts the function's name before its errors.
  message = regexprep (err.message, "^vantrel: ", "");
endfunction

function text = integer_items (items)
  text = "";
  for i = 1:numel (items)
    text = [text " " disp(items(i))(1:end-1)];
  endfor
endfunction

function code = simplest_type (items, code)
  if (all (items == 0 | items == 1))
    code = 21;
  elseif (code == 23 && all (fix (items) == items & abs (items) <= 2^63))
    code = 22;
  endif
endfunction

function text = tree_of (value)
  % The tree as the MEX file writes it.
  shape = shape_text (size (value));
  empty_text = "11/11 [0]\n";
  if (isstruct (value))
    names = fieldnames (value);
    text = ["0/0 structure " shape_text([size(value) numel(names) 2]) "\n"];
    if (isempty (value) || isempty (names))
      text = [text empty_text];
      return;
    endif
    for e = 1:numel (value)
      for f = 1:numel (names)
        name = names{f};
        text = [text "11/11 name " shape_text(numel (name)) item_text("%d", name) "\n"];
        text = [text tree_of(value(e).(name))];
      endfor
    endfor
  elseif (iscell (value))
    text = ["0/0 " shape "\n"];
    items = by_rows (value);
    for e = 1:numel (items)
      text = [text tree_of(items{e})];
    endfor
    if (isempty (items)) text = [text empty_text]; endif
  elseif (ischar (value))
    text = ["11/11 " shape item_text("%d", by_rows (double (value))) "\n"];
  elseif (islogical (value))
    text = ["21/21 " shape item_text("%d", by_rows (value)) "\n"];
  elseif (iscomplex (value))
    items = double (by_rows (value));
    pairs = [real(items)'; imag(items)'];
    if (any (imag (items) != 0))
      code = 24;
    else
      code = simplest_type (real (items), 23);
    endif
    text = [sprintf("24/%d ", code) shape item_text("%.17g", pairs) "\n"];
  elseif (isinteger (value))
    items = by_rows (value);
    text = [sprintf("22/%d ", simplest_type (items, 22)) shape integer_items(items) "\n"];
  else
    items = double (by_rows (full (value)));
    text = [sprintf("23/%d ", simplest_type (items, 23)) shape item_text("%.17g", items) "\n"];
  endif
endfunction

% --- one value ---

function check (name, value)
  message = why_refused (value);
  try
    [result, tree] = vantrel (value);
  catch err
    ok = ! isempty (message) && strcmp (err.identifier, "quillmoor_vantrel:DomainError") ...
         && strcmp (message_of (err), message);
    note (ok, name, ["refused: " err.identifier " " err.message " instead of " message]);
    return;
  end_try_catch
  if (! isempty (message))
    note (false, name, ["taken instead of refused: " message]);
    return;
  endif
  expected = narrow (value);
  note (same_value (result, expected), name, ["comes back as\n" disp(result) "\ninstead of\n" disp(expected)]);
  % What has been narrowed stays as it is.
  again = vantrel (result);
  note (same_value (again, result), [name ", again"], "is not the same the second time");
  wanted = tree_of (value);
  note (strcmp (tree, wanted), [name ", its tree"], ["is\n" tree "instead of\n" wanted]);
endfunction

function check_error (name, code, identifier, text)
  try
    code ();
    note (false, name, "no error");
  catch err
    note (strcmp (err.identifier, identifier) && strcmp (message_of (err), text), name, ...
          [err.identifier " " err.message]);
  end_try_catch
endfunction

% --- values written down ---

function check_written_values ()
  classes = {"int8", "uint8", "int16", "uint16", "int32", "uint32", "int64"};
  for c = classes
    cls = c{1};
    check ([cls " extremes"], [intmin(cls) intmax(cls)]);
    check ([cls " matrix"], feval (cls, reshape (1:12, 3, 4)));
    check ([cls " bits"], feval (cls, [0 1; 1 0]));
    check ([cls " empty"], zeros (0, 3, cls));
  endfor
  check ("double", 1.5);
  check ("whole doubles", [1 4; 2 5; 3 6]);
  check ("32 bits", [-2147483648 2147483647]);
  check ("beyond 32 bits", [2147483648 -5]);
  check ("beyond 64 bits", [1e19 1]);
  check ("2^53 and more", [2^53 2^53+2 -2^62]);
  check ("least and greatest", [realmin realmax -realmax 4.9407e-324]);
  check ("zero and minus zero", [0 -0]);
  check ("range", 1:10);
  check ("range of fractions", 0:0.25:3);
  check ("diagonal", eye (4) * 2);
  check ("permutation", eye (4)(:, [2 1 4 3]));
  check ("single", single ([0.1 2.5; -3 1e30]));
  check ("whole singles", single ([1 2 16777216]));
  check ("cube", reshape (1:24, 2, 3, 4) + 0.5);
  check ("four axes", reshape (int16 (1:120), 2, 3, 4, 5));
  check ("column", (1:5)');
  check ("a page of rows", reshape (1:6, 1, 2, 3));
  check ("empty", []);
  check ("empty cube", zeros (2, 0, 3));
  check ("large matrix", reshape (1:70*131, 70, 131));
  check ("complex", [1+2i 3-4.5i; 0 1i]);
  check ("complex single", single ([1+2i 3-4i]));
  check ("complex without imaginary parts", complex ([1.5 2], 0));
  check ("whole complex without imaginary parts", complex ([5 2], 0));
  check ("complex bits", complex ([1 0], 0));
  check ("complex that is not finite", complex ([NaN 1], [1 Inf]));
  check ("complex cube", complex (reshape (1:8, 2, 2, 2), reshape (8:-1:1, 2, 2, 2)));
  check ("logical", logical ([1 0 1; 0 0 1]));
  check ("logical cube", rand (3, 3, 3) > 0.5);
  check ("comparison", (1:5) > 3);
  check ("text", "hello");
  check ("text matrix", ["abc"; "def"]);
  check ("no text", "");
  check ("no text, one row", char (zeros (1, 0)));
  check ("bytes", char (0:255));
  check ("cells", {1, "two"; [3 4], {5, "six"}});
  check ("no cells", {});
  check ("no cells, three columns", cell (0, 3));
  check ("cells that were not set", cell (1, 2));
  check ("cube of cells", reshape (num2cell (1:8), 2, 2, 2));
  check ("structure", struct ("name", "x", "size", [1 2]));
  check ("structures", struct ("a", {1, "b"; {2}, 2.5}));
  check ("structure of structures", struct ("s", struct ("t", {{1, 2}})));
  check ("no structures", struct ("a", {}));
  check ("structure without fields", struct ());
  check ("NaN", [1 NaN]);
  check ("infinity", [1 -Inf NaN]);
  check ("single infinity", single (Inf));
  check ("uint64", uint64 (5));
  check ("sparse", sparse ([1 0 2]));
  check ("sparse logical", sparse ([true false]));
  check ("function handle", @sin);
  check ("refused inside", {1, {2, struct("x", NaN)}});
  deep = 1;
  for i = 1:200 deep = {deep}; endfor
  check ("200 deep", deep);
endfunction

% --- values nobody thought of ---

function lengths = random_lengths (longest)
  lengths = randi ([1 longest], 1, randi ([2 4]));
  if (rand () < 0.1) lengths(randi (numel (lengths))) = 0; endif
endfunction

function value = random_value (depth)
  kinds = 8;
  if (depth < 3) kinds = 10; endif
  kind = randi (kinds);
  if (kind > 8)
    lengths = random_lengths (3);
  else
    lengths = random_lengths (7);
  endif
  switch (kind)
    case 1
      value = rand (lengths) > 0.5;
    case 2
      value = char (randi ([0 255], lengths));
    case 3
      value = randn (lengths) * 10 ^ randi ([-5 5]);
    case 4
      value = randi ([-1000 1000], lengths);
    case 5
      classes = {"int8", "uint8", "int16", "uint16", "int32", "uint32", "int64"};
      value = cast (randi ([-300 300], lengths), classes{randi (numel (classes))});
    case 6
      value = single (randn (lengths));
    case 7
      value = complex (randi ([-9 9], lengths), randi ([-1 1], lengths));
    case 8
      value = randi ([-9 9], lengths) * 2 ^ randi ([0 61]);
    case 9
      value = cell (lengths);
      for e = 1:numel (value)
        value{e} = random_value (depth + 1);
      endfor
    otherwise
      value = struct ("a", cell (lengths), "b_2", cell (lengths));
      for e = 1:numel (value)
        value(e).a = random_value (depth + 1);
        value(e).b_2 = random_value (depth + 1);
      endfor
  endswitch
endfunction

function values = random_values (count)
  rand ("twister", 42);
  randn ("twister", 42);
  values = cell (1, count);
  for i = 1:count
    values{i} = random_value (0);
  endfor
endfunction

% --- files ---

function check_file (name, path)
  try
    contents = load (path);
  catch
    % Some of these files are broken on purpose.
    return;
  end_try_catch
  for n = fieldnames (contents)'
    check ([name ", " n{1}], contents.(n{1}));
  endfor
endfunction

function check_own_files (values)
  contents = struct ();
  for i = 1:numel (values)
    contents.(sprintf ("v%d", i)) = values{i};
  endfor
  for version = {"-v6", "-v7"}
    path = [tempname() ".mat"];
    save (version{1}, path, "-struct", "contents");
    check_file (["file " version{1}], path);
    unlink (path);
  endfor
endfunction

function check_foreign_files ()
  folder = getenv ("VANTREL_MAT_DATA");
  if (isempty (folder)) return; endif
  global passed failed
  before = passed + failed;
  for file = dir (fullfile (folder, "*.mat"))'
    check_file (file.name, fullfile (folder, file.name));
  endfor
  printf ("%d checks of the files in %s\n", passed + failed - before, folder);
  note (passed + failed > before, "files of VANTREL_MAT_DATA", "there are none");
endfunction

% --- calls ---

function check_calls ()
  length_error = "quillmoor_vantrel:LengthError";
  check_error ("no argument", @() vantrel (), length_error, "The Vantrel accepts one or two arguments.");
  check_error ("three arguments", @() vantrel (1, [], []), length_error, ...
               "The Vantrel accepts one or two arguments.");
  check_error ("second argument", @() vantrel ("x", 1), length_error, ...
               "The Vantrel second argument, if present, must be empty.");
  check_error ("undefined variable", @() vantrel ("no_such_variable", []), "quillmoor_vantrel:ValueError", ...
               "Value Error");
  check_error ("bad name", @() vantrel ("1x", []), "quillmoor_vantrel:DomainError", "Domain Error");
  check_error ("bad name", @() vantrel ("_x", []), "quillmoor_vantrel:DomainError", "Domain Error");
  check_error ("no name", @() vantrel (5, []), "quillmoor_vantrel:DomainError", "Domain Error");
  deep = 1;
  for i = 1:1000 deep = {deep}; endfor
  check_error ("too deep", @() vantrel (deep), "quillmoor_vantrel:SystemLimit", "System Limit");
endfunction

function check_variable (name, value)
  assignin ("base", "edited_here", value);
  vantrel ("edited_here", []);
  note (same_value (evalin ("base", "edited_here"), narrow (value)), name, "is not what was assigned");
endfunction

check_written_values ();
values = random_values (200);
for i = 1:numel (values)
  check (sprintf ("random value %d", i), values{i});
endfor
check_own_files (values(1:60));
check_foreign_files ();
check_calls ();
check_variable ("variable", [1 2; 3 4]);
check_variable ("variable of text", "abc");
check_variable ("variable of cells", {1, "a"; 2.5, {}});

printf ("%d passed, %d failed\n", passed, failed);
if (failed > 0 || passed == 0) exit (1); endif
